// SPDX-License-Identifier: MIT
// The completions are asked for words by the shells that they are for.
#include "TarvinProcess.h"

#include <gmock/gmock.h>

#include <sstream>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

namespace
{
class Completion : public FYardFixture
{
protected:
	/// Writes the completions of a shell, as they are installed. Returns false where the shell is not there.
	bool Write(const std::string& Shell, const std::string& Name)
	{
		const FTarvinRun Run = RunTarvin({"--generate", Shell});
		EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
		WriteAll(Path(Name), Run.Output);
		return RunProgram({Shell, "-c", "true"}).ExitCode == 0;
	}

	/// What a script prints, line by line; everything that stands behind a tab is left out.
	std::vector<std::string> Lines(const std::vector<std::string>& Command)
	{
		const FTarvinRun Run = RunProgram(Command);
		EXPECT_EQ(Run.Errors, "");
		std::vector<std::string> Found;
		std::istringstream Output(Run.Output);
		for (std::string Line; std::getline(Output, Line);)
		{
			Found.push_back(Line.substr(0, Line.find('\t')));
		}
		return Found;
	}

	std::vector<std::string> Bash(const std::string& Words, int Which)
	{
		return Lines({"bash", "-c",
			"source \"$0\"; COMP_WORDS=(" + Words + "); COMP_CWORD=" + std::to_string(Which) +
				"; _tarvin; printf '%s\\n' \"${COMPREPLY[@]}\"",
			Path("tarvin.bash")});
	}

	std::vector<std::string> Fish(const std::string& Line)
	{
		return Lines({"env", "HOME=" + Folder.string(), "fish", "--no-config", "-c",
			"source " + Path("tarvin.fish") + "; cd " + Folder.string() + "; complete -C '" + Line + "'"});
	}

	/// Presses the tabulator behind a line in a shell on a terminal of its own, and prints what is offered.
	std::vector<std::string> Zsh(const std::string& Line)
	{
		static const std::string Script = R"sh(
zmodload zsh/zpty
cd $1
rm -f done offered; touch offered; mkfifo done
# Notes what is offered beside offering it. The second key ends the wait.
print -r -- 'PS1= PROMPT_EOL_MARK=
fpath=($PWD $fpath); autoload -Uz compinit; compinit -u -D
compadd() {
	if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then builtin compadd "$@"; return; fi
	local -a Hits; builtin compadd -A Hits "$@"; print -rl -- $Hits >>offered; builtin compadd "$@"
}
Finish() { print >done }
zle -N Finish
bindkey "^I" list-choices
bindkey "^T" Finish' >setup
TERM=vt100 zpty Shell zsh -f -i
zpty -w Shell 'source setup'
zpty -w -n Shell "$2"$'\t\x14'
read <done
sort -u offered | sed '/^$/d'
)sh";
		return Lines({"env", "HOME=" + Folder.string(), "zsh", "-f", "-c", Script, "zsh", Folder.string(), Line});
	}
};
} // namespace

TEST_F(Completion, OfBashOffersCommandsOptionsAndWords)
{
	ASSERT_TRUE(Write("bash", "tarvin.bash"));
	EXPECT_THAT(Bash("tarvin ''", 1), IsSupersetOf({"bake", "pivot", "info", "diff", "demo", "--help", "--version"}));
	EXPECT_THAT(Bash("tarvin bake --dr", 2), ElementsAre("--dry-run"));
	EXPECT_THAT(Bash("tarvin bake --shared ''", 3), UnorderedElementsAre("ask", "duplicate", "in-place", "skip"));
	EXPECT_THAT(Bash("tarvin pivot wo", 2), ElementsAre("world-origin"));
	EXPECT_THAT(Bash("tarvin diff --dr", 2), Not(Contains("--dry-run")));
}

TEST_F(Completion, OfFishOffersCommandsOptionsAndWords)
{
	if (!Write("fish", "tarvin.fish"))
	{
		GTEST_SKIP() << "no fish is installed here";
	}
	EXPECT_THAT(Fish("tarvin "), IsSupersetOf({"bake", "pivot", "info", "diff", "demo"}));
	EXPECT_THAT(Fish("tarvin bake --dr"), ElementsAre("--dry-run"));
	EXPECT_THAT(Fish("tarvin bake --shared "), UnorderedElementsAre("ask", "duplicate", "in-place", "skip"));
	EXPECT_THAT(Fish("tarvin pivot wo"), ElementsAre("world-origin"));
	EXPECT_THAT(Fish("tarvin pivot bottom wo"), Not(Contains("world-origin")));
	EXPECT_THAT(Fish("tarvin info ya"), ElementsAre("yard.gltf"));
	EXPECT_THAT(Fish("tarvin diff --dr"), Not(Contains("--dry-run")));
}

TEST_F(Completion, OfZshOffersCommandsOptionsAndWords)
{
	if (!Write("zsh", "_tarvin"))
	{
		GTEST_SKIP() << "no zsh is installed here";
	}
	EXPECT_THAT(Zsh("tarvin "), UnorderedElementsAre("bake", "pivot", "info", "diff", "demo"));
	EXPECT_THAT(Zsh("tarvin bake --dr"), ElementsAre("--dry-run"));
	EXPECT_THAT(Zsh("tarvin bake --shared "), UnorderedElementsAre("ask", "duplicate", "in-place", "skip"));
	EXPECT_THAT(Zsh("tarvin pivot wo"), ElementsAre("world-origin"));
	EXPECT_THAT(Zsh("tarvin pivot bottom wo"), Not(Contains("world-origin")));
	EXPECT_THAT(Zsh("tarvin info ya"), ElementsAre("yard.gltf"));
	EXPECT_THAT(Zsh("tarvin diff --dr"), Not(Contains("--dry-run")));
}
