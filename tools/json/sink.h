// Where the JSON goes: a descriptor, or a text in memory.
#pragma once

#include <string>
#include <string_view>

namespace zfc_json {

class Sink {
 public:
  Sink() = default;
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;
  virtual ~Sink() = default;

  virtual void Write(std::string_view text) = 0;

  // Hands on what was written so far.
  virtual void Flush() {}
};

// Gathers what it is given and writes it in large pieces.
class DescriptorSink : public Sink {
 public:
  explicit DescriptorSink(int descriptor) : descriptor_(descriptor) {}

  void Write(std::string_view text) override;
  void Flush() override;

  // The errno of the first failure, after which nothing more is written; 0 after none.
  int Error() const { return error_; }

 private:
  void WriteAll(std::string_view rest);

  int descriptor_;
  int error_ = 0;
  std::string gathered_;
};

class TextSink : public Sink {
 public:
  void Write(std::string_view text) override { text_ += text; }

  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace zfc_json
