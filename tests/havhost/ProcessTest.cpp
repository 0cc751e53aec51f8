// The program as a process: its command line, its streams and its exit status.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/havhost/Havhost.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#endif

namespace havtest {
namespace {

#if defined(_WIN32)
// cmd takes the first and the last quotation mark away.
int System(const std::string& command) {
  return ::_wsystem(std::filesystem::u8path("\"" + command + "\"").wstring().c_str());
}
int ExitStatus(int result) { return result; }
#else
int System(const std::string& command) { return std::system(command.c_str()); }
int ExitStatus(int result) { return WIFEXITED(result) ? WEXITSTATUS(result) : -1; }
#endif

// Runs the program with these arguments, as the shell takes them.
Outcome RunProcess(const std::string& arguments) {
  const TemporaryFolder folder;
  const auto out = folder.Path("out");
  const auto err = folder.Path("err");
  const int result =
      System("\"" HAVHOST_PROGRAM "\" " + arguments + " >\"" + out + "\" 2>\"" + err + "\"");
  return {ExitStatus(result), ReadFile(out), ReadFile(err)};
}

TEST(Process, AnswersOnItsStreamsAndByItsStatus) {
  const auto version = RunProcess("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "havhost " HAVHOST_VERSION "\n");
  EXPECT_EQ(version.err, "");
  const auto usage = RunProcess("frobnicate");
  EXPECT_EQ(usage.status, 2);
  EXPECT_EQ(usage.out, "");
  EXPECT_EQ(usage.err.rfind("havhost: no such command: frobnicate", 0), 0u) << usage.err;
}

TEST(Process, FindsItsPluginAndReadsMof) {
  const ModelTest model;
  const auto outcome = RunProcess("instances T_Partition --mof \"" + model.File() + "\"");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "T_Partition.Name=\"part\"\n  Name  part\n");
}

TEST(Process, FindsItsSchemaAndShowsThisMachine) {
  const auto outcome = RunProcess("classes --class ORVSG_ComputerSystem");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "ORVSG_ComputerSystem  class  1 instance\n");
}

TEST(Process, FileNamesAreUtf8) {
  const TemporaryFolder folder;
  const auto outcome = RunProcess("load \"" + folder.Path("nirgendw\xC3\xB6.mof") + "\"");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("nirgendw\xC3\xB6.mof' is not found"), std::string::npos)
      << outcome.err;
}

TEST(Process, AFileGetsNoColourAndLinesAsLongAsTheyAre) {
  const ModelTest model;
  const auto arguments = "get \"T_Cpu.Name=\\\"cpu\\\"\" --mof \"" + model.File() + "\"";
  EXPECT_EQ(RunProcess(arguments).out, "T_Cpu.Name=\"cpu\"\n  Name  cpu\n");
  EXPECT_EQ(RunProcess(arguments + " --color always").out,
            "\x1b[1mT_Cpu.Name=\"cpu\"\x1b[0m\n  \x1b[36mName\x1b[0m  cpu\n");
  EXPECT_NE(RunProcess("get --help")
                .out.find("\n  -o,--output FILE           File to write to, "
                          "replaced when all went well (else standard output)\n"),
            std::string::npos);
}

TEST(Process, OutputIsUtf8WhateverTheSystemSpeaks) {
  const TemporaryFolder folder;
  const auto mof = folder.File(
      "umlaut.mof", std::string(kModel) + "instance of T_System { Name = \"w\u00F6rk\u20AC\"; };");
  const auto outcome = RunProcess("inventory --class T_System --mof \"" + mof + "\"");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("T_System  w\u00F6rk\u20AC\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("\u251C\u2500 T_Cpu  cpu\n"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.out.find('\r'), std::string::npos);
}

TEST(Process, StandardInputIsReadAsItIs) {
  const TemporaryFolder folder;
  const auto mof = folder.File("in.mof", kModel);
  const auto outcome = RunProcess("load - <\"" + mof + "\"");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("\nInstances                 6\n"), std::string::npos) << outcome.out;
}

#if !defined(_WIN32)

TEST(Process, FullDiskIsAFailure) {
  const TemporaryFolder folder;
  const auto err = folder.Path("err");
  const int result = System("\"" HAVHOST_PROGRAM "\" --help >/dev/full 2>\"" + err + "\"");
  EXPECT_EQ(ExitStatus(result), 1);
  EXPECT_EQ(ReadFile(err), "havhost: cannot write the output: No space left on device\n");
}

// Starts the program with its output in a pipe, and returns the end to read from.
pid_t Start(const std::vector<std::string>& arguments, int& reader) {
  int ends[2];
  if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
    std::vector<char*> values{const_cast<char*>(HAVHOST_PROGRAM)};
    for (const auto& argument : arguments) values.push_back(const_cast<char*>(argument.c_str()));
    values.push_back(nullptr);
    ::execv(HAVHOST_PROGRAM, values.data());
    ::_exit(127);
  }
  ::close(ends[1]);
  reader = ends[0];
  return child;
}

// A pipe that takes far less than the output.
TEST(Process, ReaderThatHasSeenEnoughIsNoFailure) {
  const TemporaryFolder folder;
  std::string mof;
  for (int i = 0; i < 6000; ++i)
    mof += "class T_Quite_A_Long_Name_" + std::to_string(i) + " { };\n";
  int reader = -1;
  const auto child = Start({"classes", "--mof", folder.File("many.mof", mof)}, reader);
  ASSERT_GT(child, 0);
  char byte = 0;
  EXPECT_EQ(::read(reader, &byte, 1), 1);
  ::close(reader);
  int result = 0;
  ASSERT_EQ(::waitpid(child, &result, 0), child);
  EXPECT_TRUE(WIFEXITED(result));
  EXPECT_EQ(WEXITSTATUS(result), 0);
}

// The program waits for a MOF file that nobody writes.
TEST(Process, InterruptEndsIt) {
  const TemporaryFolder folder;
  const auto fifo = folder.Path("never.mof");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  int reader = -1;
  const auto child = Start({"load", fifo}, reader);
  ASSERT_GT(child, 0);
  ::usleep(200000);
  ASSERT_EQ(::kill(child, SIGINT), 0);
  int result = 0;
  ASSERT_EQ(::waitpid(child, &result, 0), child);
  ::close(reader);
  EXPECT_TRUE(WIFSIGNALED(result));
  EXPECT_EQ(WTERMSIG(result), SIGINT);
}

#endif

}  // namespace
}  // namespace havtest
