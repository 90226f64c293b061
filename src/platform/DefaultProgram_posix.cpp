#include "platform/DefaultProgram_posix.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <cstdlib>
#include <memory>
#include <system_error>
#include <thread>

namespace brackwell::posix {
namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

struct Free {
  void operator()(char* text) const { g_free(text); }
};
using Text = std::unique_ptr<char, Free>;

/// GIO watches the folders with the programs' descriptions on a thread of its own, and ends this process if
/// it cannot start one.
bool CanAsk() try {
  std::thread([] {}).join();
  return true;
} catch (const std::system_error&) {
  return false;
}

/// By the name if that tells it, else by the content: alone, GIO takes each empty file for plain text. Empty
/// if unknown. Never by way of the desktop's services, which may not answer.
std::string ContentType(const std::string& path) {
  gboolean isUncertain = TRUE;
  const Text byName(g_content_type_guess(path.c_str(), nullptr, 0, &isUncertain));
  if (!isUncertain && !g_file_test(path.c_str(), G_FILE_TEST_IS_DIR)) return byName.get();
  const Owned<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
  const Owned<GFileInfo> info(g_file_query_info(file.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
                                                G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
  const char* type = info ? g_file_info_get_content_type(info.get()) : nullptr;
  return type ? type : std::string();
}

Owned<GAppInfo> ProgramFor(const std::string& type) {
  return Owned<GAppInfo>(g_app_info_get_default_for_type(type.c_str(), FALSE));
}

/// The opener starts what BROWSER names where nothing else is known.
bool UserNamesBrowser() {
  const char* browser = std::getenv("BROWSER");
  return browser && *browser;
}

}  // namespace

bool MayHaveProgram(const std::string& path) {
  if (UserNamesBrowser() || !CanAsk()) return true;
  const std::string type = ContentType(path);
  return type.empty() || ProgramFor(type);
}

bool MayHaveBrowser(const std::string& address) {
  if (UserNamesBrowser() || !CanAsk()) return true;
  const std::string scheme = address.substr(0, address.find(':'));
  return Owned<GAppInfo>(g_app_info_get_default_for_uri_scheme(scheme.c_str())) != nullptr;
}

std::string SnapThatOpens(const std::string& fileName) {
  if (!CanAsk()) return {};
  const Text type(g_content_type_guess(fileName.c_str(), nullptr, 0, nullptr));
  const Owned<GAppInfo> program = ProgramFor(type.get());
  if (!program || !G_IS_DESKTOP_APP_INFO(program.get())) return {};
  // Written by snapd into every description that it installs.
  const Text snap(g_desktop_app_info_get_string(G_DESKTOP_APP_INFO(program.get()), "X-SnapInstanceName"));
  return snap ? snap.get() : std::string();
}

}  // namespace brackwell::posix
