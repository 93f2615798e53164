#include "foundation/exception.h"

#include "foundation/archive.h"
#include "foundation/failure.h"
#include "foundation/matherror.h"
#include "foundation/shapeserror.h"
#include "tests/support/archived.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

class Family
{
 public:
  GX_EXCEPTION(Errors, gxException);
  GX_EXCEPTION(Cracked, Errors);
  GX_EXCEPTION_WITH_STRING(Explained, gxExceptionWithString);
  GX_EXCEPTION_WITH_STRING(ExplainedFurther, Explained);
};
GX_EXCEPTION_IMPL(Family::Errors, gxException, Errors, 0x1000fff0, "something in the family")
GX_EXCEPTION_IMPL(Family::Cracked, Family::Errors, Cracked, 0x1000fff1, "cracked")
GX_EXCEPTION_WITH_STRING_IMPL(Family::Explained, gxExceptionWithString, Explained, 0x1000fff2)
GX_EXCEPTION_WITH_STRING_IMPL(Family::ExplainedFurther, Family::Explained, ExplainedFurther, 0x1000fff3)

namespace
{

// What one exception of each kind is to say of itself.
struct Row {
  std::shared_ptr<gxException> exception;
  std::string className;
  long number;
  std::string message;
};

std::vector<Row> rows()
{
  return {
      {std::make_shared<gxException>(), "gxException", 0x10001000, "an operation failed"},
      {std::make_shared<gxExceptionWithString>("why"), "gxExceptionWithString", 0x10001001, "why"},
      {std::make_shared<gxExceptionWithString>(), "gxExceptionWithString", 0x10001001, ""},
      {std::make_shared<gxBadPointer>(), "gxBadPointer", 0x10001002, "a null handle was dereferenced"},
      {std::make_shared<gxArchive::Errors>("bad byte"), "gxArchive::Errors", 0x10001010, "bad byte"},
      {std::make_shared<gxArchive::UnknownVersion>("dispc/lamp", 12), "gxArchive::UnknownVersion", 0x10001011,
       "a version that this release does not know, met by dispc/lamp in line 12"},
      {std::make_shared<gxArchive::UnknownVersion>(nullptr, 0), "gxArchive::UnknownVersion", 0x10001011,
       "a version that this release does not know"},
      {std::make_shared<gxMathError::Singular>(), "gxMathError::Singular", 0x10001101, "the matrix has no inverse"},
      {std::make_shared<Family::Cracked>(), "Family::Cracked", 0x1000fff1, "cracked"},
      {std::make_shared<Family::ExplainedFurther>("on and on"), "Family::ExplainedFurther", 0x1000fff3, "on and on"},
  };
}

void expectRow(gxException const &e, Row const &row)
{
  EXPECT_EQ(e.className(), row.className);
  EXPECT_EQ(e.errorNumber(), row.number);
  EXPECT_EQ(e.message(), row.message);
  EXPECT_EQ(e.what(), row.className + ": " + row.message);
  EXPECT_STREQ(e.what(), e.what());
}

}  // namespace

TEST(Exceptions, SayTheSameBehindAnArchiveAndThrownByThemselves)
{
  for (Row const &row : rows()) {
    gxException const &original = *row.exception;
    expectRow(original, row);
    std::unique_ptr<gxException> loaded = throughPointer<gxException>(row.exception.get());
    gxException const &copy = *loaded;
    expectRow(copy, row);
    EXPECT_EQ(typeid(copy), typeid(original));
    if (auto const *const e = dynamic_cast<gxArchive::UnknownVersion const *>(&copy)) {
      EXPECT_EQ(e->line(), row.message.ends_with("12") ? 12 : 0);
      EXPECT_EQ(e->file(), row.message.ends_with("12") ? "dispc/lamp" : "");
    }
    try {
      loaded.release()->suicideAndRethrow();
      ADD_FAILURE() << row.className;
    } catch (gxException const &e) {
      EXPECT_EQ(typeid(e), typeid(original));
      expectRow(e, row);
    }
  }
}

TEST(Exceptions, AreCaughtAsEachOfTheirBases)
{
  EXPECT_THROW(throw Family::Cracked(), Family::Errors);
  EXPECT_THROW(throw Family::Cracked(), std::exception);
  EXPECT_THROW(throw Family::ExplainedFurther("x"), Family::Explained);
  EXPECT_THROW(throw gxArchive::UnknownVersion("f", 1), gxArchive::Errors);
  try {
    throw Family::ExplainedFurther("the rest");
  } catch (std::exception const &e) {
    EXPECT_STREQ(e.what(), "Family::ExplainedFurther: the rest");
  }
}

TEST(Exceptions, AnAssignedTextIsTheOneThatWhatGives)
{
  Family::Explained a("first");
  EXPECT_THAT(a.what(), HasSubstr("first"));
  a = Family::Explained("second");
  EXPECT_THAT(a.what(), HasSubstr("second"));

  std::stringstream stream;
  gxStoringArchive(stream) << Family::Explained("third");
  gxLoadingArchive(stream) >> a;
  EXPECT_THAT(a.what(), HasSubstr("third"));
}

// The version is found by a class, which does not know the archive; the text names the byte all the same.
TEST(Exceptions, AnUnknownVersionTellsTheByteOfTheArchiveInUse)
{
  std::stringstream stream;
  gxStoringArchive(stream) << Family::Cracked();
  std::string bytes = stream.str();
  bytes[8] = 7;
  std::stringstream bad(bytes);
  gxLoadingArchive in(bad);
  Family::Cracked target;
  try {
    in >> target;
    FAIL();
  } catch (gxArchive::UnknownVersion const &e) {
    EXPECT_EQ(e.file(), "Family::Cracked");
    EXPECT_EQ(e.line(), 0);
    EXPECT_THAT(e.message(), testing::EndsWith("met by Family::Cracked, at byte 9"));
  }
  EXPECT_THAT(gxArchive::UnknownVersion("a", 1).message(), testing::EndsWith("at byte 9"));
  std::stringstream other(stream.str());
  gxLoadingArchive second(other);
  EXPECT_THAT(gxArchive::UnknownVersion("a", 1).message(), testing::EndsWith("in line 1")) << "which of the two?";
}

// The way through a number keeps the class, for every exception of the families of this floor.
TEST(Exceptions, AFailureCodeThrowsTheExceptionOfItsNumber)
{
  auto const thrown = [](long code) -> std::string {
    try {
      gfThrowExceptionOnFailure(code);
    } catch (gxException const &e) {
      return e.what();
    }
    return "";
  };
  EXPECT_EQ(thrown(0) + thrown(1) + thrown(0x10001201), "") << "no failure";
  gxShapesError::SampleOverflow overflow;
  gxMathError::Singular singular;
  for (gxException const *e : std::initializer_list<gxException const *>{&overflow, &singular}) {
    EXPECT_LT(gfFailureCode(*e), 0);
    EXPECT_EQ(thrown(gfFailureCode(*e)), e->what());
    EXPECT_EQ(thrown(gfFailureCode(*e) & 0xffffffffL), e->what()) << "as an unsigned word";
  }
  EXPECT_THROW(gfThrowExceptionOnFailure(gfFailureCode(gxBadPointer())), gxBadPointer);
  EXPECT_THAT(thrown(-5), HasSubstr("failure code -5"));
}
