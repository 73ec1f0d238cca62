#pragma once

#include "content/BookNode.h"
#include "content/NewCourse.h"
#include "foundation/Files.h"
#include "foundation/TextFile.h"
#include "tests/support/CourseFakes.h"

/// A real course, made and opened in an installation of its own: template "红", the delivered pictures and
/// the delivered seed. Or one of a delivered template, with its full suggested tree.
class CCourseOnDisk : public CCourseWorldOf<CNodeMakerFactory> {
public:
    std::unique_ptr<CCourse> pCourse;

    explicit CCourseOnDisk(const QString& strDelivered = QString(),
                           const QString& strPlace = QDir::tempPath())
        : CCourseWorldOf(strPlace) {
        using namespace Qt::StringLiterals;
        const QString strTemplate = strDelivered.isEmpty() ? u"红"_s : strDelivered;
        LinkDelivered(u"Images"_s);
        if (strDelivered.isEmpty()) {
            Write(Template(u"eht\\htm\\通用页面.htm"_s, strTemplate), u"<p>general</p>\r\nend\r\n"_s);
            Folder.Write(Template(u"eht\\htm\\简介.htm"_s, strTemplate), "<p>intro\xFF\n\n");
            Write(Template(u"背景色.txt"_s, strTemplate), u"#102030"_s);
        } else {
            LinkDelivered(u"VorelTemplates/"_s + strDelivered);
            LinkDelivered(u"SelfDefineTitle.ini"_s);
        }
        const std::string failure = MessageOf([&] {
            CreateRecord record = Record();
            record.TemplateName = strTemplate;
            CompleteRecord(record);
            CCourse(ProjectPath(), Services).Create(record);
            pCourse = std::make_unique<CCourse>(ProjectPath(), Services);
            EXPECT_TRUE(pCourse->Open());
        });
        EXPECT_EQ(failure, "nothing was thrown");
    }

    CBookDatabase& Store() { return *pCourse->GetDatabase(); }

    /// What stands below a node's folder, "N<id>\…".
    static QString NodePath(qint32 nId, const QString& strBelow = QString()) {
        return InCourse(u"Data\\Courseware\\NodeResource\\N%1\\"_s).arg(nId) + strBelow;
    }

private:
    void LinkDelivered(const QString& strName) const {
        const QString strPlace = Folder.Native(u"程序/SysData/"_s) + strName;
        QFile::remove(strPlace);
        QFile::link(QStringLiteral(VOREL_DELIVERED_DATA "/") + strName, strPlace);
    }
};
