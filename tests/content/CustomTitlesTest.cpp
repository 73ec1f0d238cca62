#include "content/CustomTitlesCommand.h"

#include "course/TemplateStore.h"
#include "foundation/CodePage.h"
#include "foundation/IniFile.h"
#include "tests/content/CourseOnDisk.h"

using namespace Qt::StringLiterals;

namespace {

const QString c_strDelivered = Platform::FromNative(QStringLiteral(VOREL_DELIVERED_DATA));

/// Types over some of the fields.
class CTypingDialogs : public ITreeDialogs {
public:
    QHash<int, QString> Typed;
    QStringList Shown;
    bool bIntroduction = false;

    bool ConfirmDeletion(const QString&) override { return false; }
    std::optional<QString> AskTitles(const QString&) override { return std::nullopt; }
    std::optional<qint32> AskOpenType(qint32) override { return std::nullopt; }
    std::optional<QStringList> AskCustomTitles(const QStringList& titles, bool bEnabled) override {
        Shown = titles;
        bIntroduction = bEnabled;
        QStringList typed = titles;
        for (auto field = Typed.cbegin(); field != Typed.cend(); ++field)
            typed[field.key()] = field.value();
        return typed;
    }
};

class CustomTitlesTest : public ::testing::Test {
protected:
    CTempFolder m_folder;
    CCoursePaths m_paths{m_folder.Path(u"课.vcp"_s)};
    CTypingDialogs m_dialogs;
    QStringList m_renamed;

    QString Ini() { return CodePage::Decode(m_folder.Read(u"Data\\SelfDefineTitle.ini"_s)); }
    void Run(const QString& strIni) {
        m_folder.Write(u"Data\\SelfDefineTitle.ini"_s, CodePage::Encode(strIni));
        // The tree has the nodes up to 99.
        RunCustomTitles(m_paths, m_dialogs, [this](qint32 nId, const QString& strTitle) {
            m_renamed.append(QString::number(nId) + u'=' + strTitle);
            return nId < 100;
        });
    }
};

TEST_F(CustomTitlesTest, FieldsAreAppliedInOrderWhereTheTreeHasTheirNode) {
    m_dialogs.Typed = {{0, u"王"_s},   {1, u""_s},   {2, u"李"_s}, {3, u"赵"_s},
                       {4, u"简介"_s}, {6, u"二"_s}, {7, u"三"_s}};
    Run(u"; mine\r\n[Id]\r\n主讲教师一=10\r\n主讲教师二=11\r\n主讲教师三=0\r\n课程介绍=0\r\n课程录像一=20\r\n"
        u"课程录像二=100\r\n课程录像三=22\r\n[Title]\r\n主讲教师二=旧\r\n主讲教师三=留\r\n课程录像一=一\r\n"_s);
    EXPECT_EQ(m_dialogs.Shown, (QStringList{{}, u"旧"_s, u"留"_s, {}, {}, u"一"_s, {}, {}}));
    EXPECT_TRUE(m_dialogs.bIntroduction);
    EXPECT_EQ(m_renamed, (QStringList{u"10=王"_s, u"20=一"_s, u"100=二"_s, u"22=三"_s}));
    // A field that was emptied, a role without a node and a node that is gone keep what stood there.
    EXPECT_TRUE(Ini().endsWith(
        u"[Title]\r\n主讲教师二=旧\r\n主讲教师三=留\r\n课程录像一=一\r\n主讲教师一=王\r\n课程录像三=三\r\n"_s))
        << Ini().toStdString();
    EXPECT_TRUE(Ini().startsWith(u"; mine\r\n"_s));
}

TEST_F(CustomTitlesTest, TheIntroductionIsSwitchedOffByMinusOneAlone) {
    m_dialogs.Typed = {{4, u"简介"_s}};
    Run(u"[Id]\r\n课程介绍=-1\r\n"_s);
    EXPECT_FALSE(m_dialogs.bIntroduction);
    Run(u"[Title]\r\n课程介绍=旧\r\n"_s);
    EXPECT_TRUE(m_dialogs.bIntroduction);
    EXPECT_TRUE(m_renamed.isEmpty());
}

// The numbers of the delivered roles hold for the nodes that a real course gets from the delivered seed and
// the full suggested tree of every delivered template.
TEST(DeliveredCustomTitles, FitACourseMadeFromTheDeliveredData) {
    QStringList templates;
    CTemplateStore(c_strDelivered + u"\\VorelTemplates"_s).ListTemplates(templates);
    ASSERT_FALSE(templates.isEmpty());
    for (const QString& strTemplate : templates) {
        SCOPED_TRACE(strTemplate.toStdString());
        CCourseOnDisk disk(strTemplate);
        const QString strIni = disk.pCourse->GetPaths().GetCustomTitlesPath();
        int nRole = 0;
        for (const CustomTitles::Role& role : CustomTitles::Roles()) {
            const qint32 nId = CustomTitles::ReadNodeId(strIni, nRole++);
            const qint32 nParent = disk.Store().GetField(nId, u"ParentId"_s).toInt();
            EXPECT_EQ(disk.Store().GetNode(nId).Title.toStdString(), role.strKey.toStdString());
            EXPECT_EQ(disk.Store().GetNode(nParent).Title,
                      nRole <= CustomTitles::c_nIntroduction ? u"教学队伍"_s : u"课程录像"_s);
        }
    }
}

} // namespace
