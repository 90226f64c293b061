#pragma once

#include <string>

namespace brackwell {

/// For as long as it lives, a variable of the environment has another value.
class OwnVariable {
 public:
  OwnVariable(const char* name, const std::string& value);
  ~OwnVariable();
  OwnVariable(const OwnVariable&) = delete;
  OwnVariable& operator=(const OwnVariable&) = delete;

 private:
  const char* mName;
  std::string mBefore;
};

/// For as long as it lives, the user's temporary folder is the one given.
class OwnTempFolder {
 public:
  explicit OwnTempFolder(const std::string& path);

 private:
  OwnVariable mVariable;
};

/// For as long as it lives, the user's home folder is the one given.
class OwnHomeFolder {
 public:
  explicit OwnHomeFolder(const std::string& path);

 private:
  OwnVariable mVariable;
};

}  // namespace brackwell
