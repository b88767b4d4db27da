#include "window/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

class SettingsStoreTest : public testing::Test
{
protected:
    static void overwrite(const QString& name, const QByteArray& content)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    static SettingsStore::Content sample()
    {
        SettingsStore::Content content;
        content.image.gamma = 2.5;
        content.image.flipH = true;
        content.window = {{"unit", "mm"}};
        return content;
    }

    const QTemporaryDir root;
    const SettingsStore store{root.path(), "Camera 1/USB: é"};
};

TEST_F(SettingsStoreTest, EachCameraGetsItsOwnBack)
{
    EXPECT_EQ(store.save(sample()), QString());
    const SettingsStore::Content loaded = store.load();
    EXPECT_EQ(loaded.image.gamma, 2.5);
    EXPECT_TRUE(loaded.image.flipH);
    EXPECT_EQ(loaded.window["unit"].toString(), "mm");
    EXPECT_TRUE(loaded.complaints.isEmpty());

    const SettingsStore::Content other = SettingsStore(root.path(), "Camera 1_USB: é").load();
    EXPECT_EQ(other.image.gamma, 1.0);
    EXPECT_TRUE(other.window.isEmpty());
}

TEST_F(SettingsStoreTest, CameraNamesCannotLeaveTheFolder)
{
    const SettingsStore sneaky(root.path(), "../../etc");
    EXPECT_EQ(sneaky.save(sample()), QString());
    EXPECT_TRUE(
        QDir(sneaky.folder()).canonicalPath().startsWith(QDir(root.path()).canonicalPath() + "/"));
}

TEST_F(SettingsStoreTest, ADamagedFileIsKeptAsideAndTheOtherStillCounts)
{
    ASSERT_EQ(store.save(sample()), QString());
    const QString name = store.folder() + "/image.xml";
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray torn = file.readAll().chopped(40);
    file.close();
    overwrite(name, torn);

    const SettingsStore::Content loaded = store.load();
    EXPECT_EQ(loaded.image.gamma, 1.0) << "nothing of a torn file is used";
    EXPECT_EQ(loaded.window["unit"].toString(), "mm");
    ASSERT_EQ(loaded.complaints.size(), 1);
    EXPECT_FALSE(QFile::exists(name));
    const QStringList aside = QDir(store.folder()).entryList({"image.xml.damaged-*"});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(loaded.complaints[0].contains(aside[0]));
    QFile kept(store.folder() + '/' + aside[0]);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), torn);
}

TEST_F(SettingsStoreTest, SeveralDamagedFilesAreAllKept)
{
    ASSERT_EQ(store.save(sample()), QString());
    for (const char* content : {"not", "[1, 2]", "{ \"unit\": "}) {
        overwrite(store.folder() + "/window.json", content);
        EXPECT_EQ(store.load().complaints.size(), 1) << content;
    }
    EXPECT_EQ(QDir(store.folder()).entryList({"window.json.damaged-*"}).size(), 3);
    EXPECT_TRUE(store.load().complaints.isEmpty());
}

TEST_F(SettingsStoreTest, WhatCannotBeSavedIsTold)
{
    overwrite(root.filePath("file"), "in the way");
    const SettingsStore blocked(root.filePath("file"), "camera");
    EXPECT_FALSE(blocked.save(sample()).isEmpty());
}

} // namespace
