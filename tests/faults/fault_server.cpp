// Runs the program once for each case that it reads, without starting a process image for each: it is linked
// with the program's own main and with the device library of the tests, and forks. private_run starts it, so
// the fixed paths are its own; FOLDER/work is its working folder.
//
// A request on standard input, and its answer on standard output, are texts and numbers: a number is 32 bits,
// little-endian; a text is its length and its bytes; a list is its count and its texts.
//
//   request  words, settings ("NAME=value"), folders to make, files to make (path, content, path, content,
//   ...) answer   how the child ended (of waitpid), what it left open (see Left), standard output, standard
//   error, the
//            library's trace, the files that it left (path, content, ...; the content of a folder is
//            "folder")
//
// After each case everything that it left in the folders is removed again.
#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#define main RunProgram
#include "main.cpp"  // NOLINT(bugprone-suspicious-include)
#undef main

namespace {

// Ends a case that hangs; no case takes a hundredth of it.
constexpr unsigned kSecondsAtMost = 60;
constexpr int kDescriptors = 256;
constexpr const char* kFolders[] = {"/tmp", "/var/tmp", "/opt/ZunaFcEsxcliPlugin/tmp", "."};

// What a run left different, as bits; none when it ended well.
enum Left : std::uint32_t {
  kNotFinished = 1,     // main did not return
  kOtherStream = 2,     // the C library's standard output is another stream
  kOtherFile = 4,       // descriptor 1 is another file
  kDescriptorsOpen = 8  // more descriptors are open, or fewer
};

struct Case {
  std::vector<std::string> words, settings, folders, files;
};

[[noreturn]] void Die(const std::string& what) {
  std::fprintf(stderr, "fault_server: %s: %s\n", what.c_str(), std::strerror(errno));
  std::_Exit(1);
}

// Whether all bytes were there; false at the end of the input.
bool ReadFully(void* target, std::size_t size) {
  auto* at = static_cast<char*>(target);
  while (size > 0) {
    const ssize_t count = read(STDIN_FILENO, at, size);
    if (count <= 0) return false;
    at += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

std::uint32_t ReadNumber() {
  std::uint32_t number = 0;
  if (!ReadFully(&number, sizeof number)) Die("half a request");
  return number;
}

std::vector<std::string> ReadTexts(std::uint32_t count) {
  std::vector<std::string> texts(count);
  for (std::string& text : texts) {
    text.resize(ReadNumber());
    if (!ReadFully(text.data(), text.size())) Die("half a request");
  }
  return texts;
}

bool ReadCase(Case& next) {
  std::uint32_t words = 0;
  if (!ReadFully(&words, sizeof words)) return false;
  next.words = ReadTexts(words);
  next.settings = ReadTexts(ReadNumber());
  next.folders = ReadTexts(ReadNumber());
  next.files = ReadTexts(ReadNumber());
  return true;
}

void WriteFully(int file, const std::string& text) {
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = write(file, text.data() + written, text.size() - written);
    if (count <= 0) Die("cannot write");
    written += static_cast<std::size_t>(count);
  }
}

void AppendNumber(std::string& answer, std::uint32_t number) {
  answer.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void AppendText(std::string& answer, const std::string& text) {
  AppendNumber(answer, static_cast<std::uint32_t>(text.size()));
  answer += text;
}

std::string Content(int file) {
  std::string content;
  char piece[65536];
  off_t at = 0;
  for (ssize_t count; (count = pread(file, piece, sizeof piece, at)) > 0; at += count) {
    content.append(piece, static_cast<std::size_t>(count));
  }
  return content;
}

// A file in memory that takes what a child writes.
class Capture {
 public:
  explicit Capture(const char* name) : file_(memfd_create(name, 0)) {
    if (file_ < 0) Die(name);
  }

  int file() const { return file_; }

  std::string Take() const {
    std::string content = Content(file_);
    if (ftruncate(file_, 0) != 0 || lseek(file_, 0, SEEK_SET) != 0) Die("cannot empty a capture");
    return content;
  }

 private:
  int file_;
};

std::set<std::string> Paths() {
  std::set<std::string> paths;
  for (const char* const folder : kFolders) {
    DIR* const open = opendir(folder);
    if (open == nullptr) Die(folder);
    while (const dirent* const entry = readdir(open)) {
      const std::string name = entry->d_name;
      if (name != "." && name != "..") paths.insert(std::string(folder) + "/" + name);
    }
    closedir(open);
  }
  return paths;
}

std::string ContentOf(const std::string& path) {
  struct stat status = {};
  if (lstat(path.c_str(), &status) != 0) Die(path);
  if (S_ISDIR(status.st_mode)) return "folder";
  if (!S_ISREG(status.st_mode)) return "neither a file nor a folder";
  // The mirror of the shell's output is made for writing alone, which keeps an ordinary user from reading it.
  if (chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0) Die(path);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) Die(path);
  std::string content = Content(file);
  close(file);
  return content;
}

// One file or one empty folder: nothing here removes what is below a folder.
void Remove(const std::string& path) {
  if (unlink(path.c_str()) == 0) return;
  if (rmdir(path.c_str()) != 0) Die("cannot remove " + path);
}

// The files that a case left, which are removed. Those in `own` were there before all cases.
void AppendFiles(std::string& answer, const std::set<std::string>& own) {
  std::vector<std::string> texts;
  for (const std::string& path : Paths()) {
    if (own.contains(path)) continue;
    texts.push_back(path);
    texts.push_back(ContentOf(path));
    Remove(path);
  }
  AppendNumber(answer, static_cast<std::uint32_t>(texts.size()));
  for (const std::string& text : texts) AppendText(answer, text);
}

void MakeFiles(const Case& now) {
  for (const std::string& folder : now.folders) {
    if (mkdir(folder.c_str(), 0755) != 0) Die(folder);
  }
  for (std::size_t i = 0; i + 1 < now.files.size(); i += 2) {
    const int file = open(now.files[i].c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0) Die(now.files[i]);
    WriteFully(file, now.files[i + 1]);
    close(file);
  }
}

// By one call for all: asking for each would take a tenth of a case.
int CountDescriptors() {
  struct pollfd files[kDescriptors] = {};
  for (int file = 0; file < kDescriptors; ++file) files[file].fd = file;
  if (poll(files, kDescriptors, 0) < 0) Die("cannot ask for the descriptors");
  return static_cast<int>(std::count_if(std::begin(files), std::end(files), [](const struct pollfd& file) {
    return (file.revents & POLLNVAL) == 0;
  }));
}

std::uint32_t WhatIsLeft(std::FILE* stream, const struct stat& file, int descriptors) {
  struct stat now = {};
  std::uint32_t left = 0;
  if (stdout != stream) left |= kOtherStream;
  if (fstat(STDOUT_FILENO, &now) != 0 || now.st_dev != file.st_dev || now.st_ino != file.st_ino)
    left |= kOtherFile;
  if (CountDescriptors() != descriptors) left |= kDescriptorsOpen;
  return left;
}

[[noreturn]] void RunCase(const Case& now, const Capture& output, const Capture& errors, const Capture& trace,
                          std::uint32_t& left) {
  alarm(kSecondsAtMost);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  close(nothing);
  dup2(output.file(), STDOUT_FILENO);
  dup2(errors.file(), STDERR_FILENO);
  for (const std::string& setting : now.settings) {
    const std::size_t equals = setting.find('=');
    setenv(setting.substr(0, equals).c_str(), setting.c_str() + equals + 1, 1);
  }
  setenv("HOSTILE_TRACE", ("/proc/self/fd/" + std::to_string(trace.file())).c_str(), 1);

  static char name[] = "/zfcesxcli";
  program_invocation_name = name;  // names the debug log
  std::vector<char*> words = {name};
  for (const std::string& word : now.words) words.push_back(const_cast<char*>(word.c_str()));
  const int count = static_cast<int>(words.size());
  words.push_back(nullptr);

  struct stat file = {};
  fstat(STDOUT_FILENO, &file);
  std::FILE* const stream = stdout;
  const int descriptors = CountDescriptors();
  const int status = RunProgram(count, words.data());
  left = WhatIsLeft(stream, file, descriptors);
  std::exit(status);  // with all that belongs to a normal end: buffers, static objects, the search for leaks
}

}  // namespace

int main() {
  void* const shared =
      mmap(nullptr, sizeof(std::uint32_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) Die("no shared memory");
  auto& left = *static_cast<std::uint32_t*>(shared);
  const Capture output("output");
  const Capture errors("errors");
  const Capture trace("trace");
  const std::set<std::string> own = Paths();

  for (Case next; ReadCase(next);) {
    MakeFiles(next);
    left = kNotFinished;
    const pid_t child = fork();
    if (child < 0) Die("cannot fork");
    if (child == 0) RunCase(next, output, errors, trace, left);
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
      if (errno != EINTR) Die("lost a child");
    }
    std::string answer;
    AppendNumber(answer, static_cast<std::uint32_t>(status));
    AppendNumber(answer, left);
    AppendText(answer, output.Take());
    AppendText(answer, errors.Take());
    AppendText(answer, trace.Take());
    AppendFiles(answer, own);
    WriteFully(STDOUT_FILENO, answer);
  }
  return 0;
}
