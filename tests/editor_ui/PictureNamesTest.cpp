// Pictures of every name on their road: from the disk into the page, into the course, and back onto the
// screen.
#include "editor/ui/EditorView.h"
#include "foundation/CodePage.h"
#include "platform/ui/WebBrowser.h"
#include "tests/editor_ui/ViewHarness.h"

#include <QBuffer>

#include <gmock/gmock.h>

namespace {

const QStringList c_names = {
    u"图片.png"_s,       u"a b  c.png"_s,    u"100%.png"_s,       u"a%20b.png"_s, u"a%2520b.png"_s,
    u"a%5Bb%26.png"_s,   u"[1](2){3}.png"_s, u"a#1.png"_s,        u"a&b;.png"_s,  u"a&amp;b.png"_s,
    u"a&copy.png"_s,     u"a\"b.png"_s,      u"it's.png"_s,       u"UPPER.PNG"_s, u"upper.png"_s,
    u"誠乗.png"_s,       u"😀.png"_s,         u"+=,;@!~`^$.png"_s, u"a?b.png"_s,   u"a<b>.png"_s,
    u"硬\u00A0空.png"_s, u"（全）％.png"_s,  u"没有扩展名"_s,     u"a.b.p%20g"_s, u"res.p#g"_s};

constexpr int c_nHeight = 5;

QByteArray PictureOfWidth(int nWidth) {
    QImage picture(nWidth, c_nHeight, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

class PictureNamesTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_pNode = m_world.MakePage(u"页"_s, "<p>x</p>");
        m_view.m_pNode = m_pNode.get();
        ShowOnScreen(m_view);
        m_view.ShowNode();
    }
    QString PageFile(const QString& strBelow) const { return m_world.NodePath(m_pNode->GetId(), strBelow); }
    QByteArray OnDisk() const { return m_world.Folder.Read(PageFile(u"Content.htm"_s)); }
    QStringList Resources() const {
        return QDir(m_world.Folder.Native(PageFile(u"res"_s))).entryList(QDir::Files);
    }
    /// Whether the editor comes to show all of all pictures.
    bool AllShown() {
        const qsizetype nAll = c_names.size() * (c_names.size() + 1) / 2 * c_nHeight;
        const bool bShown = QTest::qWaitFor([&] { return nAll == CountRed(); }, 5000);
        EXPECT_EQ(CountRed(), nAll);
        return bShown;
    }
    qsizetype CountRed() {
        const QImage shown =
            m_view.findChild<QWidget*>(u"design"_s)->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto* pPixels = reinterpret_cast<const QRgb*>(shown.constBits());
        return std::count(pPixels, pPixels + qsizetype{shown.width()} * shown.height(), qRgb(255, 0, 0));
    }
    /// The pictures' own widths in the order of the page, as an engine that shows the saved page has loaded
    /// them; 0 for one that it has not.
    std::vector<int> WidthsInCourse() {
        CWebBrowser2Ex surface;
        surface.SetAllowedFolders({m_world.pCourse->GetPaths().GetCourseFolder(false)}, false);
        EXPECT_TRUE(surface.NavigateAndWait(m_pNode->GetContentPath()));
        std::vector<int> widths;
        for (int n = 1; n <= c_names.size(); ++n) {
            const bool bShown = surface.ExecuteScript(
                u"if (document.images[%1].naturalWidth !== %2) throw 1"_s.arg(n - 1).arg(n));
            widths.push_back(bShown ? n : 0);
        }
        return widths;
    }

    CViewWorld m_world;
    std::unique_ptr<CBookNode> m_pNode;
    CEditorView m_view{m_world.Host, m_world.People};
};

TEST_F(PictureNamesTest, ShowInThePageBeforeTheSaveAndAfterIt) {
    std::vector<int> all;
    for (int n = 0; n < c_names.size(); ++n) {
        const QString strBelow = u"第#1章 100%\\"_s + c_names[n];
        m_world.Folder.Write(strBelow, PictureOfWidth(n + 1));
        m_world.People.Files.push_back(m_world.Folder.Path(strBelow));
        ASSERT_TRUE(m_view.RunCommand(32790));
        all.push_back(n + 1);
    }
    EXPECT_TRUE(AllShown());

    ASSERT_TRUE(m_view.RunCommand(32825));
    const QByteArray saved = OnDisk();
    EXPECT_EQ(saved.count("src=\"res/"), c_names.size()) << saved;
    EXPECT_FALSE(saved.contains("file:")) << saved;
    const QStringList resources = Resources();
    EXPECT_EQ(resources.size(), c_names.size());
    EXPECT_TRUE(AllShown());

    EXPECT_TRUE(m_view.LeaveNode(true));
    QDir(m_world.Folder.Native(u"第#1章 100%"_s)).removeRecursively();
    m_view.ShowNode();
    EXPECT_TRUE(AllShown());
    EXPECT_EQ(WidthsInCourse(), all);
    ASSERT_TRUE(m_view.RunCommand(32825));
    EXPECT_EQ(OnDisk(), saved);
    EXPECT_EQ(Resources(), resources);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

} // namespace
