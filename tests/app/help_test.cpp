#include "tests/app/program.h"

namespace corvanta::app_tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using HelpTest = ProgramTest;

TEST_F(HelpTest, AMissingOrUnknownCommandIsNamedAndAllAreListed) {
  struct Row {
    char const* line;
    char const* fault;
  };
  for (auto const& [line, fault] :
       {Row{"", "corvanta: options: a command is missing\n"},
        Row{"rendr model.gltf", "there is no command \"rendr\"; did you mean render?\n"},
        Row{"pic", "did you mean pick?\n"}, Row{"qqqqqqqq", "no command \"qqqqqqqq\"\n"},
        Row{"--size 3", "no command \"--size\"\n"}}) {
    Result const result = Run(line);
    EXPECT_EQ(result.status, 2) << line;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, AllOf(StartsWith("corvanta: options: "), HasSubstr(fault),
                                  HasSubstr("usage: corvanta COMMAND"), HasSubstr("\n  render ")));
  }
}

TEST_F(HelpTest, EveryCommandHasHelpOfItsOwnThatFitsATerminal) {
  for (std::string const command :
       {"info", "render", "play", "pick", "map", "watch", "demo", "formats", "help"}) {
    Result const result = RunWell("help " + command);
    EXPECT_THAT(result.out, StartsWith("usage: corvanta " + command + ' '));
    EXPECT_EQ(RunWell(command + " --help").out, result.out);
    for (std::string const& line : result.Lines()) EXPECT_LE(line.size(), 80u) << line;
    bool const readsFiles = result.out.find("FILE") != std::string::npos;
    EXPECT_EQ(readsFiles, result.out.find("--memory MB") != std::string::npos) << command;
  }
  EXPECT_EQ(RunWell("help").out, RunWell("--help").out);
  ExpectRefused("help", {{"fly", "there is no command \"fly\""}});
  ExpectRefused("render a.gltf", {{"--sise=3", "render has no option --sise; did you mean --size?"},
                                  {"--zzzzzzzzz", "corvanta help render tells more"}});
}

TEST_F(HelpTest, TellsItsVersionAndWhatItReads) {
  EXPECT_THAT(RunWell("--version").out,
              testing::MatchesRegex("corvanta [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  auto const lines = RunWell("formats").Lines();
  EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr(".gltf .glb"), HasSubstr("tinygltf"))));
  EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr(" .obj"), HasSubstr("Assimp"))));
#ifdef CORVANTA_WITH_FREEIMAGE
  EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("Portable Network"), HasSubstr(" .png"))));
#endif
}

}  // namespace
}  // namespace corvanta::app_tests
