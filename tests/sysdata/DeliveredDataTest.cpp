// The delivered data against the code that reads it: what a teacher's first course is made of.

#include "course/BookDatabase.h"
#include "course/InitialNodes.h"
#include "course/TemplateStore.h"
#include "editor/EditorCommands.h"
#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "tests/support/Testing.h"

#include <QtEndian>

using Torvane::File::IsFile;

namespace {

const QString c_strData = Platform::FromNative(QStringLiteral(VOREL_DELIVERED_DATA));
const CTemplateStore c_store(c_strData + u"\\VorelTemplates"_s);

QStringList Templates() {
    QStringList list;
    c_store.ListTemplates(list);
    return list;
}

QList<InitialNode> Nodes(const QString& strPath) {
    QList<InitialNode> list;
    EXPECT_TRUE(ReadInitialNodes(strPath, list)) << strPath;
    return list;
}

/// A whole JPEG of one picture of a page, light enough to stand in a list.
void ExpectPreview(const QString& strPath) {
    SCOPED_TRACE(strPath);
    ASSERT_TRUE(IsFile(strPath));
    const QByteArray bytes = ReadFileBytes(strPath);
    EXPECT_TRUE(bytes.startsWith("\xff\xd8\xff"));
    EXPECT_TRUE(bytes.endsWith("\xff\xd9"));
    EXPECT_LT(bytes.size(), 60 * 1024);
}

/// A bitmap of the given width whose header declares an alpha channel: without one the pictures would show
/// on black.
void ExpectBitmap(const QString& strPath, qint32 nWidth) {
    SCOPED_TRACE(strPath);
    ASSERT_TRUE(IsFile(strPath));
    const QByteArray bytes = ReadFileBytes(strPath);
    ASSERT_GE(bytes.size(), 70);
    EXPECT_TRUE(bytes.startsWith("BM"));
    EXPECT_EQ(qFromLittleEndian<qint32>(bytes.constData() + 18), nWidth);
    EXPECT_EQ(qFromLittleEndian<quint16>(bytes.constData() + 28), 32);
    EXPECT_EQ(qFromLittleEndian<quint32>(bytes.constData() + 66), 0xFF000000u);
}

/// Counts what would be made.
class CCountingMaker : public IInitialNodeMaker {
public:
    qint32 AddChild(qint32, const QString&) override { return c_nRootNodeId + ++Nodes; }
    bool InitFromTemplatePage(qint32, const QString& strTemplate, const QString& strPage) override {
        EXPECT_TRUE(IsFile(c_store.GetPagePath(strTemplate, strPage))) << strPage;
        ++Pages;
        return true;
    }

    int Nodes = 0;
    int Pages = 0;
};

} // namespace

TEST(DeliveredData, EveryTemplateIsComplete) {
    const QStringList templates = Templates();
    EXPECT_EQ(templates.size(), 3);
    for (const QString& strTemplate : templates) {
        SCOPED_TRACE(strTemplate);
        ExpectBitmap(c_store.GetIconPath(strTemplate), 32);
        ExpectPreview(c_store.GetPreviewPath(strTemplate));
        EXPECT_TRUE(IsFile(c_store.GetDefaultPagePath(strTemplate)));
        for (const auto& strSheet : {u"page.css"_s, u"site.css"_s})
            EXPECT_TRUE(IsFile(c_store.GetSkinFolder(strTemplate) + u"\\skin\\"_s + strSheet));
        // White is what a colour file that can't be understood gives.
        EXPECT_NE(c_store.GetBackColor(strTemplate), 0xFFFFFFu);
        EXPECT_TRUE(c_store.HasSameNodes(templates.first(), strTemplate));
    }
}

TEST(DeliveredData, EveryPageIsPlainMarkupInTheCodePageWithAPreview) {
    // What a browser would write otherwise than it stands, so that opening and saving changed a page; and
    // what would reach outside the course.
    const QRegularExpression unstable(u"<[^>]*[A-Z][^>]*>|/>|\\r|&|=[^\"]|<(html|head|body|script)\\b|://"_s);
    for (const QString& strTemplate : Templates()) {
        QStringList pages;
        c_store.ListPages(strTemplate, pages);
        EXPECT_GE(pages.size(), 15);
        for (const QString& strPage : pages) {
            SCOPED_TRACE(QString(strTemplate + u'/' + strPage));
            const QByteArray bytes = ReadFileBytes(c_store.GetPagePath(strTemplate, strPage));
            const QString strText = CodePage::Decode(bytes);
            EXPECT_FALSE(strText.contains(QChar::ReplacementCharacter));
            EXPECT_EQ(CodePage::Encode(strText), bytes);
            EXPECT_TRUE(strText.contains(u"href=\"../skin/page.css\""_s));
            const QRegularExpressionMatch match = unstable.match(strText);
            EXPECT_FALSE(match.hasMatch()) << match.captured();
            ExpectPreview(c_store.GetPagePreviewPath(strTemplate, strPage));
        }
    }
}

TEST(DeliveredData, TheSuggestedTreeIsOneWholeAndItsPagesAreThere) {
    const QString strFirst = Templates().value(0);
    const QByteArray tree = ReadFileBytes(c_store.GetInitialNodesPath(strFirst));
    for (const auto& strFile : {u"\\InitialNodes.txt"_s, u"\\VorelInitialNodes.txt"_s})
        EXPECT_EQ(ReadFileBytes(c_strData + strFile), tree);

    for (const QString& strTemplate : Templates()) {
        SCOPED_TRACE(strTemplate);
        const QList<InitialNode> nodes = Nodes(c_store.GetInitialNodesPath(strTemplate));
        CCountingMaker maker;
        ASSERT_TRUE(CreateInitialNodes(strTemplate, nodes, c_nRootNodeId, maker));
        EXPECT_EQ(maker.Nodes, nodes.size()) << "a line is linked from nowhere";
        EXPECT_GT(maker.Pages, 20);
    }
}

TEST(DeliveredData, EveryPictureThatTheProgramNamesIsThere) {
    for (const EditorCommands::Command& command : EditorCommands::All()) {
        if (command.strBitmap.isEmpty())
            continue;
        const QString strPath = c_strData + u"\\Images\\HtmlEditorToolBarImgs\\"_s + command.strBitmap;
        ExpectBitmap(strPath, 16);
        ExpectBitmap(QString(strPath).replace(u".bmp"_s, u"@2x.bmp"_s), 32);
    }
    QStringList pictures = {u"Help.gif"_s, u"sorry.jpg"_s, u"sorry@2x.jpg"_s};
    for (const int nResource : {136, 139, 140, 141, 142, 324, 326, 339, 345, 369}) {
        pictures += u"Resource\\%1.png"_s.arg(nResource);
        pictures += u"Resource\\%1@2x.png"_s.arg(nResource);
    }
    for (const int nCommand : {32777, 32778, 32815, 32855, 32939}) {
        for (const auto& strState : {u""_s, u"-hot"_s, u"-disabled"_s}) {
            pictures += u"Resource\\Toolbar\\%1%2.png"_s.arg(nCommand).arg(strState);
            pictures += u"Resource\\Toolbar\\%1%2@2x.png"_s.arg(nCommand).arg(strState);
        }
    }
    for (const auto& strSize : {u""_s, u"-16"_s, u"-32"_s, u"-48"_s, u"-256"_s})
        pictures += u"Resource\\128%1.png"_s.arg(strSize);
    for (const QString& strPicture : pictures)
        EXPECT_TRUE(IsFile(c_strData + u"\\Images\\"_s + strPicture)) << strPicture;
}
