// What the commands do with files, and every message.
#include "batch/BatchCommands.h"
#include "tests/batch/BatchBench.h"

using namespace folivex;
using folivex::testing::entry;
using folivex::testing::texts;

namespace {

class Commands : public folivex::testing::BatchBench {
protected:
  BatchEntries m_rows;
  BatchCommands m_commands{m_rows};
};

} // namespace

TEST_F(Commands, FailuresAreToldAndLeaveTheRows) {
  m_rows.append({entry("Yes", "a.pdf")});
  const CommandWords unread = m_commands.append(at("none.lst"));
  EXPECT_EQ(unread.message, "Can't read list file.");
  EXPECT_TRUE(unread.notice.contains(at("none.lst")));
  EXPECT_EQ(m_commands.listPath(), at("none.lst"));
  const CommandWords unsaved = m_commands.saveAs(at("none/x.lst"));
  EXPECT_EQ(unsaved.message, "Can't save to :" + at("none/x.lst"));
  EXPECT_EQ(texts(m_rows.all()), QStringList{"Yes a.pdf"});
  write("long.lst", "a||\n" + QByteArray(300, 'x') + "||\nb||\n");
  const CommandWords cut = m_commands.append(at("long.lst"));
  EXPECT_EQ(cut.message, QString());
  EXPECT_TRUE(cut.notice.startsWith("Line 2 of ")) << cut.notice.toStdString();
  m_rows.append({entry("Yes", "a|b.pdf")});
  EXPECT_TRUE(m_commands.saveAs(at("x.lst")).notice.startsWith("2 paths will not load again"));
  // Silent for this name in any folder, but not about a failure.
  QDir(m_folder.path()).mkdir("my");
  EXPECT_EQ(m_commands.saveAs(at("my/default.lst")).message, QString());
  EXPECT_EQ(m_commands.saveAs(at("no/default.lst")).message,
            "Can't save to :" + at("no/default.lst"));
}

TEST_F(Commands, DroppedThingsKeepTheirOrder) {
  write("notes.txt");
  write("z.pdf");
  QDir(m_folder.path()).mkdir("folder.pdf");
  m_commands.addDropped(
      {at("notes.txt"), at("gone.pdf"), at("folder.pdf"), at("z.pdf"), at("notes.txt")},
      [this](const QString& folder) {
        EXPECT_EQ(m_rows.count(), 1);
        m_rows.append({entry("Yes", folder + "/found")});
      });
  EXPECT_EQ(texts(m_rows.all()),
            (QStringList{"Yes " + at("notes.txt"), "Yes " + at("folder.pdf/found"),
                         "Yes " + at("z.pdf"), "Yes " + at("notes.txt")}));
}

TEST_F(Commands, CountsInWords) {
  EXPECT_EQ(BatchCommands::countText(m_rows), "The list is empty.");
  m_rows.append({entry("Yes", "a")});
  EXPECT_EQ(BatchCommands::countText(m_rows), "1 file, 1 in use.");
  m_rows.append({entry("No", "b"), entry("Yes", "c")});
  m_rows.setStatus(0, "Done", {});
  m_rows.setStatus(2, "file error", {});
  EXPECT_EQ(BatchCommands::countText(m_rows), "3 files, 2 in use; 1 done; 1 file error.");
  m_rows.setStatus(0, "Processing", {}); // in a second run
  EXPECT_EQ(BatchCommands::countText(m_rows), "3 files, 2 in use; 1 file error.");

  const ScanResult result{
      .added = 1, .stopped = true, .unreadableFolders = 4, .unreadable = {"/a", "/b", "/c"}};
  EXPECT_EQ(BatchCommands::scanNotice({"/in"}, result),
            "1 file added from /in. Stopped before the end. 4 folders could not be read: /a, /b, "
            "/c, ...");
  EXPECT_EQ(BatchCommands::scanNotice({"/x", "/y"}, {}), "0 files added from 2 folders.");
}
