#include "dispc/uierror.h"

#include "dispc/dispprop.h"
#include "tests/support/archived.h"

#include <gtest/gtest.h>

#include <set>
#include <typeindex>

namespace
{
struct Row {
  char const *name;
  long number;
  gxException *(*make)();
};

#define ROW(Class, number)                                               \
  {                                                                      \
#Class, number, [] { return static_cast<gxException *>(new Class); } \
  }
Row const rows[] = {
    ROW(gxUIError::BadLayer, 0x10002b00),
    ROW(gxUIError::BadIconPattern, 0x10002b01),
    ROW(gxUIError::FlagStackUnderflow, 0x10002b02),
    ROW(gxUIError::FlagStackOverflow, 0x10002b03),
    ROW(gxUIError::FlagStackOutOfRange, 0x10002b04),
    ROW(gxUIError::NotAvailable, 0x10002b06),
    ROW(gxUIError::NotEnabled, 0x10002b07),
    ROW(gxUIError::BadKeyValue, 0x10002b08),
    ROW(gxUIError::InvalidColorMapSize, 0x10002b09),
    ROW(gxUIError::NotImplemented, 0x10002b12),
    ROW(gxUIError::BadParams, 0x10002b13),
    ROW(gxUIError::NotRGBColor, 0x10002b14),
    ROW(gxUIError::NotIndexColor, 0x10002b15),
    ROW(gxUIError::NoLongerSupported, 0x10002b16),
    ROW(gxUIError::InvalidUISketch, 0x10002b17),
    ROW(gxUIError::InitFailed, 0x10002b18),
    ROW(gxGraphicProps::BadParams, 268453139),
};
#undef ROW

std::type_index classOf(gxException const &e)
{
  return typeid(e);
}

}  // namespace

TEST(UIError, EachClassIsItselfWhereverItGoes)
{
  std::set<std::string> texts;
  for (Row const &row : rows) {
    SCOPED_TRACE(row.name);
    std::unique_ptr<gxException> const made(row.make());
    EXPECT_EQ(made->errorNumber(), row.number);
    EXPECT_STREQ(made->className(), row.name);
    EXPECT_NE(std::string(made->what()).find(row.name), std::string::npos);
    EXPECT_TRUE(texts.insert(made->message()).second) << "a text of another class";
    EXPECT_EQ(dynamic_cast<gxUIError::Errors *>(made.get()) != nullptr, row.name[2] == 'U');

    std::unique_ptr<gxException> const loaded = throughPointer<gxException>(made.get());
    ASSERT_TRUE(loaded);
    EXPECT_EQ(classOf(*loaded), classOf(*made));

    try {
      row.make()->suicideAndRethrow();
    } catch (gxException const &thrown) {
      EXPECT_EQ(classOf(thrown), classOf(*made));
      EXPECT_EQ(thrown.errorNumber(), row.number);
    }
  }
}

TEST(UIError, UnknownVersionNamesTheClass)
{
  gxUIError::BadLayer error;
  std::ostringstream os;
  gxStoringArchive storing(os);
  unsigned char before = 0x5A;
  storing || before || error;
  storing.flush();
  std::string stored = os.str();
  stored.at(archivedHead().size()) = 1;
  std::istringstream is(stored);
  gxLoadingArchive loading(is);
  try {
    loading || before || error;
    FAIL() << "accepted";
  } catch (gxArchive::UnknownVersion const &e) {
    EXPECT_EQ(e.file(), "gxUIError::BadLayer");
    EXPECT_EQ(e.line(), 0);
  }
}
