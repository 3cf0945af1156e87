// Runs a program of the system beneath Wine, where the readers are that tests compare with:
//   beneath PROGRAM ARGUMENT...
// Its output, both streams, and its exit code are passed on; it ends when this program is ended.
// Wine hands a program of the other world neither pipes nor a handle to wait on, so all goes by
// files.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;

constexpr DWORD pause = 5; // milliseconds between two looks
constexpr int cannotRun = 127;

std::string utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
  bytes.pop_back();
  return bytes;
}

/// The root of a drive as the system beneath calls it.
std::string rootOf(char drive) {
  using UnixName = char*(CDECL*)(const wchar_t*);
  static const auto unixName = reinterpret_cast<UnixName>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
  const wchar_t root[] = {static_cast<wchar_t>(drive), L':', L'\\', L'\0'};
  char* const name = unixName == nullptr ? nullptr : unixName(root);
  if (name == nullptr) {
    return {};
  }
  std::string text = name;
  HeapFree(GetProcessHeap(), 0, name);
  return text.ends_with('/') ? text : text + '/';
}

/// Paths with a drive, wherever they begin in the text, as the system beneath calls them.
std::string asBeneath(const std::string& text) {
  static const std::regex path("\\b([A-Za-z]):[/\\\\]([^ '\"\n]*)");
  std::string made;
  auto from = text.begin();
  for (std::sregex_iterator found(text.begin(), text.end(), path), end; found != end; ++found) {
    made.append(from, (*found)[0].first).append(rootOf(*(*found)[1].first));
    std::string rest = (*found)[2];
    std::replace(rest.begin(), rest.end(), '\\', '/');
    made += rest;
    from = (*found)[0].second;
  }
  return made.append(from, text.end());
}

/// As the shell takes it for one word.
std::string word(const wchar_t* argument) {
  std::string quoted = "'";
  for (const char c : asBeneath(utf8(argument))) {
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return quoted + '\'';
}

fs::path ownFolder() {
  wchar_t name[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, name);
  const fs::path folder = fs::path(name) / ("beneath" + std::to_string(GetCurrentProcessId()));
  fs::create_directories(folder);
  return folder;
}

std::string script(const fs::path& folder, bool takesInput, int count, wchar_t** arguments) {
  std::string line = "PATH=/usr/local/bin:/usr/bin:/bin LC_ALL=C.UTF-8; export PATH LC_ALL; unset "
                     "LD_PRELOAD\ncd " +
                     word(fs::current_path().c_str()) + "\nat=" + word(folder.c_str()) + "\n";
  line += takesInput ? "(while [ ! -e \"$at/end\" ]; do sleep 0.05; done) & feeder=$!\n"
                       "tail -c +1 -f -s 0.05 --pid=$feeder \"$at/in\" | "
                     : "</dev/null ";
  for (int i = 1; i < count; ++i) {
    line += word(arguments[i]) + ' ';
  }
  line += ">\"$at/out\" 2>\"$at/err\" & child=$!\n"
          "(while [ -e \"$at/alive\" ]; do sleep 0.2; done; kill $child) 2>/dev/null &\n"
          "wait $child; echo $? >\"$at/code.new\"; mv \"$at/code.new\" \"$at/code\"\n";
  return line;
}

/// Passes on what came to a file since the last time.
class Relay {
public:
  Relay(fs::path file, DWORD stream) : m_file(std::move(file)), m_to(GetStdHandle(stream)) {}
  void passOn() {
    std::ifstream in(m_file, std::ios::binary);
    in.seekg(m_done);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    m_done += static_cast<std::streamoff>(bytes.size());
    DWORD written = 0;
    if (!bytes.empty()) {
      WriteFile(m_to, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
  }

private:
  fs::path m_file;
  HANDLE m_to;
  std::streamoff m_done = 0;
};

/// Hands on what this program is given until there is no more.
void feed(const fs::path& folder) {
  std::ofstream in(folder / "in", std::ios::binary | std::ios::app);
  char bytes[4096];
  const HANDLE from = GetStdHandle(STD_INPUT_HANDLE);
  for (DWORD count = 0; ReadFile(from, bytes, sizeof(bytes), &count, nullptr) != 0 && count > 0;) {
    in.write(bytes, static_cast<std::streamsize>(count)).flush();
  }
  std::ofstream(folder / "end", std::ios::binary);
}

std::optional<int> codeIn(const fs::path& file) {
  std::ifstream in(file);
  int code = 0;
  return in >> code ? std::optional(code) : std::nullopt;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
  const fs::path folder = ownFolder();
  const HANDLE alive = CreateFileW((folder / "alive").c_str(), GENERIC_WRITE, FILE_SHARE_DELETE,
                                   nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  const bool takesInput = GetFileType(GetStdHandle(STD_INPUT_HANDLE)) == FILE_TYPE_PIPE;
  std::ofstream(folder / "run", std::ios::binary) << script(folder, takesInput, count, arguments);
  std::ofstream(folder / "in", std::ios::binary);
  if (takesInput) {
    std::thread(feed, folder).detach();
  }
  // The shell is told the name that it knows.
  const std::string known = word((folder / "run").c_str());
  std::wstring command = L"Z:\\bin\\sh " + std::wstring(known.begin() + 1, known.end() - 1);
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION process{};
  if (CreateProcessW(L"Z:\\bin\\sh", command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &start, &process) == 0) {
    return cannotRun;
  }
  Relay out(folder / "out", STD_OUTPUT_HANDLE);
  Relay err(folder / "err", STD_ERROR_HANDLE);
  std::optional<int> code;
  while (!code) {
    Sleep(pause);
    code = codeIn(folder / "code"); // before the last look at what it wrote
    out.passOn();
    err.passOn();
  }
  CloseHandle(alive);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  std::_Exit(*code); // whoever feeds may still wait
}
