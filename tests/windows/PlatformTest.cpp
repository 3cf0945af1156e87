// What the platform layer asks of Windows alone.
#include "common/FileIdentity.h"
#include "platform/FileStamp.h"
#include "platform/Paths.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/Programs.h"

#include <windows.h>

namespace folivex::test {
namespace {

constexpr auto appPaths = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\Folivex.exe";

/// An installation of this user, until a test ends; the one for all users must not be there.
class AppPaths : public testing::Test {
protected:
  AppPaths() { qputenv("FOLIVEX_SETUP_IN_INSTALL_FOLDER", "1"); }
  ~AppPaths() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, appPaths);
    qunsetenv("FOLIVEX_SETUP_IN_INSTALL_FOLDER");
  }
  static void write(const wchar_t* name, const std::wstring& value) {
    RegSetKeyValueW(HKEY_CURRENT_USER, appPaths, name, REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  }
};

TEST_F(AppPaths, TellTheInstallFolderOrWhyNot) {
  ASSERT_EQ(platform::installFolderOfSetup().problem, "Install key not found in registry!")
      << "Is the program installed here? Take it away first.";
  write(nullptr, L"C:\\Äpfel\\folivex.exe");
  EXPECT_EQ(platform::installFolderOfSetup().problem,
            "Can't find install path in registry - please reinstall");
  write(L"Path", L"C:\\Äpfel");
  EXPECT_EQ(platform::installFolderOfSetup().path, QString::fromUtf8("C:\\Äpfel"));
  EXPECT_EQ(platform::installFolderOfSetup().problem, "");
  qunsetenv("FOLIVEX_SETUP_IN_INSTALL_FOLDER");
  EXPECT_FALSE(platform::installFolderOfSetup().isAsked);
}

/// What the libraries tell of a file that they wrote is compared with what the program sees.
TEST_F(OwnFolder, StampsAreTheLibrariesOwnNumbers) {
  const QString path = at(QString::fromUtf8("Zoë.pdf"));
  writeFile(path, "one");
  const auto seen = platform::FileStamp::of(path);
  const auto told = common::FileIdentity::of(path.toStdString());
  ASSERT_TRUE(seen && told);
  EXPECT_TRUE(seen->isSameContent({told->device, told->number, told->size, told->changed, 0}));
  EXPECT_TRUE(platform::FileStamp::of(m_folder.path()));
  EXPECT_FALSE(platform::FileStamp::of(at("none")));

  QFile::remove(path);
  writeFile(path, "two");
  EXPECT_FALSE(platform::FileStamp::of(path)->isSameContent(*seen));
}

} // namespace
} // namespace folivex::test
