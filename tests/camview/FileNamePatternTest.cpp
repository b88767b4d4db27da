#include "core/FileNamePattern.h"

#include <QSet>

#include <gtest/gtest.h>

namespace
{

TEST(FileNamePattern, FillsInAndKeepsNamesApart)
{
    const QDateTime time(QDate(2031, 2, 3), QTime(4, 5, 6));
    const struct {
        const char* pattern;
        const char* camera;
        QSet<QString> taken;
        const char* name;
    } rows[] = {
        {"%c_%d_%t", "sim", {}, "sim_20310203_040506"},
        {"%c_%d_%t", "sim", {"sim_20310203_040506"}, "sim_20310203_040506_001"},
        {"shot%n", "sim", {}, "shot001"},
        {"shot%n", "sim", {"shot001", "shot002"}, "shot003"},
        {"100%%_%x%", "sim", {}, "100%_%x%"},
        {"%c", "../../etc/pass wd", {}, "_.._.._etc_pass_wd"},
        {"", "sim", {}, "_"},
        {"-rf", "sim", {}, "_-rf"},
        {"a/b", "sim", {}, "a_b"},
    };
    for (const auto& row : rows) {
        const auto isTaken = [&row](const QString& name) { return row.taken.contains(name); };
        EXPECT_EQ(fileNameFrom(row.pattern, row.camera, time, isTaken).toStdString(), row.name)
            << row.pattern;
    }
}

} // namespace
