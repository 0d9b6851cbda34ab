// Where the bytes come from: a descriptor, or a text in memory.
#pragma once

#include <cstddef>
#include <string_view>

namespace zfc_json {

class Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;

  // Writes the next bytes to `target`, at most `size`, and returns how many: 0 at the end, and after a
  // failure.
  virtual std::size_t Read(char* target, std::size_t size) = 0;
};

class DescriptorSource : public Source {
 public:
  explicit DescriptorSource(int descriptor) : descriptor_(descriptor) {}

  std::size_t Read(char* target, std::size_t size) override;

  // The errno of the failure that ended the reading; 0 after none.
  int Error() const { return error_; }

 private:
  int descriptor_;
  int error_ = 0;
};

// Gives a text in pieces of at most `piece` bytes.
class TextSource : public Source {
 public:
  explicit TextSource(std::string_view text, std::size_t piece = 65536) : rest_(text), piece_(piece) {}

  std::size_t Read(char* target, std::size_t size) override;

 private:
  std::string_view rest_;
  std::size_t piece_;
};

}  // namespace zfc_json
