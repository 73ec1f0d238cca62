#include "platform/ui/FileFilter.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(FileFilter, NotationsOfThePrograms) {
    struct SRow {
        QString strNotation;
        QStringList expected;
    };
    const SRow rows[] = {
        {u"模板文件(.htm)|*.htm||"_s, {u"模板文件(.htm) (*.htm)"_s}},
        {u"所有图片文件(*.gif;*.png)|*.gif;*.png\t\t\t|JPEG 文件(*.jpg,*.jpeg)|*.jpg;*.jpeg|所有文件(*.*)|*.*||"_s,
         {u"所有图片文件 (*.gif *.png)"_s, u"JPEG 文件 (*.jpg *.jpeg)"_s, u"所有文件 (*)"_s}},
        {u"*.swf|*.swf||"_s, {u"*.swf (*.swf)"_s}},
        {QString(), {u"所有文件 (*)"_s}},
        {u"label|"_s, {u"所有文件 (*)"_s}},
    };
    for (const SRow& row : rows)
        EXPECT_EQ(FileFilter::ToNameFilters(row.strNotation), row.expected) << row.strNotation.toStdString();
}
