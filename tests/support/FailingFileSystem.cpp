#include "support/FailingFileSystem.h"

#include <utility>

namespace brackwell {

/// Listing and looking up can fail as well.
class FailingFolder final : public Folder {
 public:
  FailingFolder(const FailingFileSystem& owner, std::unique_ptr<Folder> real)
      : mOwner(owner), mReal(std::move(real)) {}

  const std::string& Path() const override { return mReal->Path(); }
  ItemProperties Properties() const override {
    mOwner.Count(Path());
    return mReal->Properties();
  }
  FolderState State() const override {
    mOwner.Count(Path());
    return mReal->State();
  }
  const std::vector<Member>& Files() override {
    mOwner.Count(Path());
    return mReal->Files();
  }
  const std::vector<Member>& SubFolders() override {
    mOwner.Count(Path());
    return mReal->SubFolders();
  }
  std::optional<FileStatus> Find(std::string_view name) const override { return mReal->Find(name); }
  ItemDetails FileDetails(std::string_view name) const override {
    mOwner.Count(JoinPath(Path(), name));
    return mReal->FileDetails(name);
  }
  void Rename(const std::string& name, const std::string& newName) override {
    mOwner.Count(JoinPath(Path(), newName));
    mReal->Rename(name, newName);
  }

 private:
  const FailingFileSystem& mOwner;
  const std::unique_ptr<Folder> mReal;
};

namespace {

/// Writing and closing can fail as well.
class FailingWriter final : public TextWriter {
 public:
  FailingWriter(std::function<void()> count, std::unique_ptr<TextWriter> real)
      : mCount(std::move(count)), mReal(std::move(real)) {}
  void Write(std::string_view bytes) override {
    mCount();
    mReal->Write(bytes);
  }
  void Close() override {
    mCount();
    mReal->Close();
  }

 private:
  const std::function<void()> mCount;
  const std::unique_ptr<TextWriter> mReal;
};

class FailingReader final : public TextReader {
 public:
  FailingReader(std::function<void()> count, std::unique_ptr<TextReader> real)
      : mCount(std::move(count)), mReal(std::move(real)) {}
  std::uint64_t Size() const override { return mReal->Size(); }
  std::optional<FileIdentity> SharedIdentity() const override { return mReal->SharedIdentity(); }
  std::size_t Read(char* buffer, std::size_t size) override {
    mCount();
    return mReal->Read(buffer, size);
  }
  std::string ReadAll() override {
    mCount();
    return mReal->ReadAll();
  }
  void Rewind() override {
    mCount();
    mReal->Rewind();
  }
  std::unique_ptr<TextWriter> Rewrite(Tick tick) override {
    mCount();
    return std::make_unique<FailingWriter>(mCount, mReal->Rewrite(std::move(tick)));
  }

 private:
  const std::function<void()> mCount;
  const std::unique_ptr<TextReader> mReal;
};

}  // namespace

FailingFileSystem::FailingFileSystem(int failAt, FileError error) : mFailAt(failAt), mError(error) {}

FailingFileSystem::FailingFileSystem(const FailingFileSystem& whole, std::unique_ptr<FileSystemObject> real)
    : mWhole(&whole), mReal(std::move(real)), mFailAt(0), mError(whole.mError) {}

std::unique_ptr<FileSystemObject> FailingFileSystem::Within(const std::vector<std::string>& roots) const {
  return std::unique_ptr<FileSystemObject>(new FailingFileSystem(*this, mReal->Within(roots)));
}

void FailingFileSystem::Count(const std::string& path) const {
  if (mWhole) return mWhole->Count(path);
  ++mCalls;
  if (OnCall) OnCall();
  if (mFailAt > 0 && mCalls >= mFailAt) throw FileSystemError(mError, path);
}

Tick FailingFileSystem::Counting(const std::string& path, const Tick& tick) const {
  return [this, path, tick] {
    Count(path);
    if (tick) tick();
  };
}

bool FailingFileSystem::FileExists(const std::string& path) const { return mReal->FileExists(path); }
bool FailingFileSystem::FolderExists(const std::string& path) const { return mReal->FolderExists(path); }

ItemProperties FailingFileSystem::GetFile(const std::string& path) const {
  Count(path);
  return mReal->GetFile(path);
}

std::unique_ptr<Folder> FailingFileSystem::GetFolder(const std::string& path, const Tick& tick) const {
  Count(path);
  return std::make_unique<FailingFolder>(*this, mReal->GetFolder(path, tick));
}

bool FailingFileSystem::LiesWithin(const std::string& folder, const std::string& ancestor) const {
  Count(folder);
  return mReal->LiesWithin(folder, ancestor);
}

std::string FailingFileSystem::Drive(const std::string& path) const { return mReal->Drive(path); }
std::string FailingFileSystem::ShortName(const std::string& path) const { return mReal->ShortName(path); }
std::string FailingFileSystem::ShortPath(const std::string& path) const { return mReal->ShortPath(path); }
std::string FailingFileSystem::Type(const std::string& path) const { return mReal->Type(path); }
std::string FailingFileSystem::Type(std::string_view name, ItemKind kind) const {
  return mReal->Type(name, kind);
}

void FailingFileSystem::CopyFile(const std::string& source, const std::string& target, bool overwrite,
                                 const Tick& tick) {
  Count(target);
  mReal->CopyFile(source, target, overwrite, Counting(target, tick));
}

void FailingFileSystem::CopyAsNewFile(const std::string& source, const std::string& target,
                                      const Tick& tick) {
  Count(target);
  mReal->CopyAsNewFile(source, target, Counting(target, tick));
}

void FailingFileSystem::CreateFolder(const std::string& path) {
  Count(path);
  mReal->CreateFolder(path);
}

void FailingFileSystem::CopyFolderProperties(const std::string& source, const std::string& target) {
  Count(target);
  mReal->CopyFolderProperties(source, target);
}

std::unique_ptr<TextReader> FailingFileSystem::OpenTextFile(const std::string& path) const {
  Count(path);
  return std::make_unique<FailingReader>([this, path] { Count(path); }, mReal->OpenTextFile(path));
}

std::unique_ptr<TextWriter> FailingFileSystem::CreateTextFile(const std::string& path, bool overwrite) {
  Count(path);
  return std::make_unique<FailingWriter>([this, path] { Count(path); },
                                         mReal->CreateTextFile(path, overwrite));
}

}  // namespace brackwell
