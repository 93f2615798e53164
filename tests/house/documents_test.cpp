// The documents of the repository: links lead somewhere, and what is shown as code is the code that is built.

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace
{

namespace fs = std::filesystem;

/// The anchor that a heading gets where the documents are shown: small letters, blanks as hyphens, no punctuation.
std::string slug(std::string const &heading)
{
  std::string anchor;
  for (char const c : heading) {
    auto const letter = static_cast<unsigned char>(c);
    if (std::isalnum(letter) || c == '-' || c == '_')
      anchor += static_cast<char>(std::tolower(letter));
    else if (c == ' ')
      anchor += '-';
  }
  return anchor;
}

struct Document {
  std::set<std::string> anchors;
  std::vector<std::string> links;
};

void addLinks(std::string const &line, std::vector<std::string> &links)
{
  for (auto at = line.find("]("); at != std::string::npos; at = line.find("](", at + 1)) {
    auto const end = line.find(')', at);
    if (end != std::string::npos)
      links.push_back(line.substr(at + 2, end - at - 2));
  }
}

Document read(std::istream &in)
{
  Document document;
  bool code = false;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("```"))
      code = !code;
    else if (!code && line.starts_with('#'))
      document.anchors.insert(slug(line.substr(line.find_first_not_of("# "))));
    else if (!code)
      addLinks(line, document.links);
  }
  return document;
}

Document read(fs::path const &path)
{
  std::ifstream in(path);
  return read(in);
}

bool leadsOutside(std::string const &link)
{
  return link.find("://") != std::string::npos;
}

/// Whether a link of the document at this path leads to a file, and to a heading of it if it names one.
bool leadsSomewhere(fs::path const &path, std::string const &link)
{
  auto const hash = link.find('#');
  auto const target = hash == 0 ? path : path.parent_path() / link.substr(0, hash);
  if (!fs::exists(target))
    return false;
  return hash == std::string::npos || read(target).anchors.contains(link.substr(hash + 1));
}

std::vector<fs::path> documents()
{
  fs::path const root = GX_SOURCE_ROOT;
  std::vector<fs::path> paths;
  for (auto const &entry : fs::directory_iterator(root))
    if (entry.path().extension() == ".md")
      paths.push_back(entry.path());
  for (auto const &entry : fs::recursive_directory_iterator(root / "docs"))
    if (entry.path().extension() == ".md")
      paths.push_back(entry.path());
  return paths;
}

TEST(Documents, linksLeadSomewhere)
{
  std::size_t inside = 0;
  for (auto const &path : documents())
    for (auto const &link : read(path).links)
      if (!leadsOutside(link)) {
        EXPECT_TRUE(leadsSomewhere(path, link)) << path.string() << ": " << link;
        ++inside;
      }
  EXPECT_GT(inside, 10u) << "the documents link to each other; were they found?";
}

TEST(Documents, brokenLinksAreSeen)
{
  fs::path const readme = GX_SOURCE_ROOT "/README.md";
  EXPECT_TRUE(leadsSomewhere(readme, "docs/architecture.md#the-road-of-a-draw-call"));
  EXPECT_FALSE(leadsSomewhere(readme, "docs/architecture.md#no-such-heading"));
  EXPECT_FALSE(leadsSomewhere(readme, "docs/no-such-file.md"));
  EXPECT_FALSE(leadsSomewhere(readme, "#no-such-heading"));
}

std::string content(fs::path const &path)
{
  std::ifstream in(path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(Documents, theExampleOfTheReadmeIsTheOneThatIsBuilt)
{
  fs::path const root = GX_SOURCE_ROOT;
  auto const example = content(root / "examples/first_picture.cpp");
  ASSERT_FALSE(example.empty());
  EXPECT_NE(content(root / "README.md").find("```cpp\n" + example + "```\n"), std::string::npos);
}

/// The lines of code without their indentation.
std::string flattened(std::string const &code)
{
  std::string flat;
  std::istringstream in(code);
  for (std::string line; std::getline(in, line);) {
    std::size_t const from = line.find_first_not_of(' ');
    flat += from == std::string::npos ? "\n" : line.substr(from) + '\n';
  }
  return flat;
}

/// The pieces of C++ that a document shows.
std::vector<std::string> codeIn(fs::path const &path)
{
  std::vector<std::string> pieces;
  std::string const text = content(path), fence = "```cpp\n";
  for (auto at = text.find(fence); at != std::string::npos; at = text.find(fence, at + 1))
    pieces.push_back(text.substr(at + fence.size(), text.find("```", at + fence.size()) - at - fence.size()));
  return pieces;
}

TEST(Documents, whatTaskPagesShowIsInTheirPrograms)
{
  fs::path const root = GX_SOURCE_ROOT;
  for (auto const &[page, program] : {std::pair("overlays", "show_overlay"), std::pair("sketches", "record_and_replay"),
                                      std::pair("libraries", "check_library")}) {
    fs::path const path = root / "docs" / (std::string(page) + ".md");
    std::string const source = flattened(content(root / "examples/tasks" / (std::string(program) + ".cpp")));
    ASSERT_FALSE(source.empty()) << program;
    std::vector<std::string> const pieces = codeIn(path);
    EXPECT_GE(pieces.size(), 3u) << page;
    for (std::string const &piece : pieces)
      EXPECT_NE(source.find(flattened(piece)), std::string::npos) << page << " shows what its program has not:\n"
                                                                  << piece;
    EXPECT_NE(content(path).find(std::string(program) + ".cpp"), std::string::npos) << page;
  }
}

}  // namespace
