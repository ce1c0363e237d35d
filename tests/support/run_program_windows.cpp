// Starts the program with files for its three standard streams, and answers its message boxes until
// it ends.
#include "support/notices_windows.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {

namespace {

// A run that takes longer is taken for hung and is killed.
constexpr ULONGLONG RunMilliseconds = 300000;
constexpr UINT KilledStatus = 200;

// A file as a standard stream: `access` GENERIC_READ or GENERIC_WRITE.
HANDLE OpenStream(const std::filesystem::path& file, DWORD access) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const DWORD creation = access == GENERIC_READ ? OPEN_EXISTING : CREATE_ALWAYS;
  return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, creation,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Starts the program with the three streams in `streams`. Returns its process, or null.
PROCESS_INFORMATION StartProgram(const std::filesystem::path& program,
                                 const std::filesystem::path& folder,
                                 const std::filesystem::path& streams,
                                 const std::vector<std::string>& arguments) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = OpenStream(streams / "in", GENERIC_READ);
  startup.hStdOutput = OpenStream(streams / "out", GENERIC_WRITE);
  startup.hStdError = OpenStream(streams / "err", GENERIC_WRITE);
  PROCESS_INFORMATION process{};
  std::wstring line = L'"' + program.wstring() + L'"';
  for (const std::string& argument : arguments) {
    line += L" \"" + std::filesystem::u8path(argument).wstring() + L'"';
  }
  CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(),
                 &startup, &process);
  for (HANDLE stream : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
    CloseHandle(stream);
  }
  return process;
}

}  // namespace

ProgramRun RunProgram(const std::filesystem::path& program, const std::filesystem::path& folder,
                      const std::string& input, const std::vector<std::string>& arguments) {
  const TempFolder streams;
  WriteFile(streams.Path() / "in", input);
  ProgramRun run;
  const PROCESS_INFORMATION process = StartProgram(program, folder, streams.Path(), arguments);
  if (process.hProcess == nullptr) return run;
  const ULONGLONG start = GetTickCount64();
  while (WaitForSingleObject(process.hProcess, LookEveryMilliseconds) == WAIT_TIMEOUT) {
    AnswerNotice(process.dwProcessId, run.notices);
    if (GetTickCount64() - start > RunMilliseconds)
      TerminateProcess(process.hProcess, KilledStatus);
  }
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  run.exitStatus = static_cast<int>(status);
  run.out = ReadFile(streams.Path() / "out");
  run.err = ReadFile(streams.Path() / "err");
  if (!run.err.empty()) run.notices.push_back(run.err);
  return run;
}

// "计算日志.txt". Windows has wide names, so no second name is needed.
std::filesystem::path LogPath() { return L"\u8BA1\u7B97\u65E5\u5FD7.txt"; }

std::vector<std::string> LogNames() { return {LogPath().u8string()}; }

}  // namespace korvex::test
