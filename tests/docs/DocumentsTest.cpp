// What the documents show is true: their code is in files that are built, and their commands run.

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

#include "support/TestSoundServer.h"

namespace orn {
namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

const fs::path kRoot = ORN_ROOT;
const std::string kBuild = ORN_BUILD;

std::string contents(const fs::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A fenced block of a document.
struct Block {
  std::string language, text = {};
  std::string source = {};  ///< The file that an HTML comment right above it names.
};

std::vector<Block> blocksOf(const fs::path& document) {
  std::vector<Block> blocks;
  std::ifstream stream(document);
  std::smatch match;
  for (std::string before, line; std::getline(stream, line); before = line) {
    if (!line.starts_with("```")) continue;
    Block& block = blocks.emplace_back(Block{line.substr(3)});
    if (std::regex_match(before, match, std::regex("<!-- from (\\S+) -->"))) block.source = match[1];
    while (std::getline(stream, line) && !line.starts_with("```")) block.text += line + "\n";
    EXPECT_TRUE(stream) << document << " ends within a block";
  }
  return blocks;
}

std::vector<fs::path> documents() {
  std::vector<fs::path> found;
  for (const fs::path& folder : {kRoot, kRoot / "docs"}) {
    std::copy_if(fs::directory_iterator(folder), {}, std::back_inserter(found),
                 [](const fs::path& one) { return one.extension() == ".md"; });
  }
  return found;
}

/// A command that builds or checks the whole project can't run within one of its tests: instead, everything that it
/// names must exist. A command that doesn't end by itself must still be running after some seconds.
std::string runnable(std::string line) {
  const std::string stages = "for s in $1; do grep -q \"stage_$s()\" .ci/run || exit 1; done";
  const std::pair<std::regex, std::string> changes[] = {
      {std::regex("#.*"), ""},
      {std::regex("build/(dev|release)\\b"), kBuild},
      {std::regex("^time "), ""},
      {std::regex("^([A-Z_]+=\\S+ )?make (.*)"), "make -n $2 > /dev/null"},
      {std::regex("^\\.ci/run *(.*)"), stages},
      {std::regex("^scripts/build.sh dev *$"), "test -x scripts/build.sh"},
      {std::regex("^scripts/build.sh dev (.*)"), "cmake --build " + kBuild + " --target $1 -- -n > /dev/null"},
      {std::regex("^(scripts/\\S+)(.*)"), "bash -n $1"},
      {std::regex("^ctest --preset dev(.*)"), "ctest --test-dir " + kBuild + " -N $1 | grep -q 'Total Tests: [1-9]'"},
      {std::regex("^((\\$H|[^ =]*/(hearing|[a-z_]*test)).*[^& ]) *$"), "runs $1"},
  };
  for (const auto& [from, to] : changes) line = std::regex_replace(line, from, to);
  return line;
}

std::string scriptOf(const std::string& block) {
  std::string script =
      "set -eu\nruns() { timeout 4 \"$@\" < /dev/null > out 2> err || [ $? -eq 124 ] || { cat err >&2; exit 1; }; }\n";
  std::istringstream lines(block);
  for (std::string line; std::getline(lines, line);) script += runnable(line) + "\n";
  return script;
}

TEST(Documents, ShowCodeThatIsBuilt) {
  int shown = 0;
  for (const auto& document : documents()) {
    for (const Block& block : blocksOf(document)) {
      if (block.language.empty() || block.language == "sh") continue;
      ASSERT_FALSE(block.source.empty()) << document << " shows code of no file:\n" << block.text;
      EXPECT_THAT(contents(kRoot / block.source), HasSubstr(block.text)) << document;
      ++shown;
    }
  }
  EXPECT_GE(shown, 3);
}

TEST(Documents, NameOnlyFilesThatExist) {
  const std::regex link("\\]\\(([^)#: ]+)(#[^)]*)?\\)");
  for (const auto& document : documents()) {
    const std::string text = contents(document);
    for (std::sregex_iterator one(text.begin(), text.end(), link), end; one != end; ++one) {
      EXPECT_TRUE(fs::exists(document.parent_path() / (*one)[1].str())) << document << ": " << (*one)[1];
    }
  }
}

/// A folder that looks like the project's, with settings, a display and a sound server of the test's own.
class DocumentsCommands : public testing::Test {
 protected:
  DocumentsCommands() {
    server_.addAudiometer();
    server_.setDefault("audiometer");
    for (const auto& entry : fs::directory_iterator(kRoot)) {
      if (entry.path().filename() != "build") fs::create_symlink(entry.path(), folder_ / entry.path().filename());
    }
  }

  int run(const std::string& script) const {
    std::ofstream(folder_ / "script") << script;
    const std::string environment = "cd " + folder_.string() +
                                    " && env QT_QPA_PLATFORM=offscreen PULSE_SERVER=" + server_.address() +
                                    " HOME=" + server_.folder() + " XDG_CONFIG_HOME=" + server_.folder() +
                                    "/config XDG_DATA_HOME=" + server_.folder() + "/data ";
    const int status = std::system((environment + "bash script").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  TestSoundServer server_{ServerKind::PulseAudio};
  const contract::TemporaryFolder project_;
  const fs::path folder_ = project_.path();
};

TEST_F(DocumentsCommands, Run) {
  int count = 0;
  for (const auto& document : documents()) {
    for (const Block& block : blocksOf(document)) {
      if (block.language != "sh") continue;
      EXPECT_EQ(run(scriptOf(block.text)), 0) << document << ":\n" << block.text;
      ++count;
    }
  }
  EXPECT_GE(count, 5);
  EXPECT_NE(run(scriptOf("build/release/bin/hearing-test no-such-command")), 0);
  EXPECT_NE(run(scriptOf("make no-such-target")), 0);
}

}  // namespace
}  // namespace orn
