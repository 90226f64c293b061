#pragma once

#include <algorithm>
#include <memory>
#include <string>

#include "platform/TextFile.h"

namespace brackwell {

/// A file that is but its content. Rewriting it changes the content on Close.
class MemoryFile final : public TextReader {
 public:
  explicit MemoryFile(std::string content) : Content(std::move(content)) {}

  std::uint64_t Size() const override { return Content.size(); }
  std::optional<FileIdentity> SharedIdentity() const override { return std::nullopt; }
  std::size_t Read(char* buffer, std::size_t size) override {
    const std::size_t length = Content.copy(buffer, size, mAt);
    mAt += length;
    return length;
  }
  std::string ReadAll() override { return Content.substr(mAt); }
  void Rewind() override { mAt = 0; }
  std::unique_ptr<TextWriter> Rewrite(Tick /*tick*/) override { return std::make_unique<Writer>(*this); }

  std::string Content;

 private:
  class Writer final : public TextWriter {
   public:
    explicit Writer(MemoryFile& file) : mFile(file) {}
    void Write(std::string_view bytes) override { mContent += bytes; }
    void Close() override { mFile.Content = mContent; }

   private:
    MemoryFile& mFile;
    std::string mContent;
  };

  std::size_t mAt = 0;
};

}  // namespace brackwell
