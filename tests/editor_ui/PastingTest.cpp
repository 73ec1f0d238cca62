// Every road on which something is pasted into a page.
#include "editor/KeptPages.h"
#include "tests/editor_ui/EditorFixture.h"

#include <QBuffer>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

using BoxAnswer = CScriptedPeople::BoxAnswer;

namespace {

QImage Picture(QRgb colour) {
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

QByteArray PngOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

/// On a busy machine the engine takes its time.
constexpr int c_nPatience = 30000;

class PastingTest : public CEditorFixture {
protected:
    ~PastingTest() override { QApplication::clipboard()->clear(); }

    static std::unique_ptr<QMimeData> Offered(const QString& strHtml, const QString& strText) {
        auto pMime = std::make_unique<QMimeData>();
        pMime->setHtml(strHtml);
        pMime->setText(strText);
        return pMime;
    }
    static void Offer(std::unique_ptr<QMimeData> pMime) {
        QApplication::clipboard()->setMimeData(pMime.release());
    }
    static void OfferWord() {
        Offer(Offered(u"<style>p{color:red}</style><p class=MsoNormal style='margin:0cm'>"
                      "<span style='font-size:22pt;font-weight:bold'>粗</span>体<o:p></o:p></p>"_s,
                      u"粗体"_s));
    }
    void Key(int nKey, Qt::KeyboardModifiers modifiers) {
        CWebBrowser2Ex& surface = Surface("design");
        surface.setFocus();
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return surface.isAncestorOf(QApplication::focusWidget()); }, c_nPatience));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(nKey), modifiers);
    }
    void ExpectHtml(const QString& strHtml) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return Html() == strHtml; }, c_nPatience))
            << Html() << "\ninstead of\n"
            << strHtml;
    }
    void Drop(const QMimeData& mime, const QPoint& place) {
        QWidget& view = *Surface("design").findChild<QWidget*>(u"webView"_s);
        QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &drop);
        EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    }
    bool Shows(QRgb colour) {
        return QTest::qWaitFor(
            [&] {
                const QImage shown = Surface("design").grab().toImage().convertToFormat(QImage::Format_RGB32);
                const auto* pPixels = reinterpret_cast<const QRgb*>(shown.constBits());
                return std::count(pPixels, pPixels + qsizetype{shown.width()} * shown.height(), colour) ==
                       40 * 30;
            },
            c_nPatience);
    }
    QStringList Resources() const {
        return QDir(m_world.Folder.Native(PageFile(u"res"_s))).entryList(QDir::Files);
    }
    /// The files of pictures that live until the page is left.
    QStringList Waiting() const {
        const QDir unsaved(m_world.Folder.Native(CCourseWorld::InCourse(u"Data\\Unsaved"_s)));
        QStringList files;
        for (const QString& strFolder : unsaved.entryList({u"*.files"_s}, QDir::Dirs))
            files += QDir(unsaved.filePath(strFolder)).entryList(QDir::Files);
        return files;
    }
};

TEST_F(PastingTest, RichTextComesCleanOnEveryRoadAndIsUndoneInOneStep) {
    Open("<p>onetwo</p>");
    OfferWord();
    const QString strPasted = u"<p><b>粗</b>体onetwo</p>"_s;
    const std::function<void()> roads[] = {
        [this] { Key(Qt::Key_V, Qt::ControlModifier); },
        [this] { Key(Qt::Key_Insert, Qt::ShiftModifier); },
        [this] { m_view.RunCommand(32796); },
        [this] {
            Drop(*Offered(u"<p style=\"color:#333\"><b>粗</b>体</p>"_s, u"粗体"_s), {9, 20});
        },
    };
    for (const auto& road : roads) {
        road();
        ExpectHtml(strPasted);
        // The caret stands behind it.
        ASSERT_TRUE(Surface("design").InsertBrowserText(u"|"_s));
        ExpectHtml(QString(strPasted).replace(u"体"_s, u"体|"_s));
        m_view.RunCommand(32821);
        ExpectHtml(strPasted);
        m_view.RunCommand(32821);
        ExpectHtml(u"<p>onetwo</p>"_s);
    }
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    ExpectHtml(u"<p>粗体</p>"_s);
    m_view.RunCommand(32821);
    ExpectHtml(u"<p>onetwo</p>"_s);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, WhatIsTypedRightBehindComesBehind) {
    Open("<p>A</p>");
    const auto type = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    const std::pair<QString, QString> rows[] = {{u"<b>T</b>"_s, u"<p><b>T</b>xzA</p>"_s},
                                                {u"<p>1</p><p>2</p>"_s, u"<p>1</p><p>2xzA</p>"_s}};
    for (const auto& [strOffered, strPasted] : rows) {
        Offer(Offered(strOffered, u"t"_s));
        Key(Qt::Key_V, Qt::ControlModifier);
        // Before the program knows of the wish.
        type(Qt::Key_X);
        EXPECT_TRUE(QTest::qWaitFor([&] { return Html().size() == strPasted.size() - 1; }, c_nPatience));
        type(Qt::Key_Z);
        ExpectHtml(strPasted);
        while (Html() != u"<p>A</p>"_s)
            ASSERT_TRUE(m_view.RunCommand(32821));
    }
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, WhatIsTypedOverASelectionTakesNothingElseAlong) {
    Open("<p>one</p><p>two</p>");
    Offer(Offered(u"<b>T</b>"_s, u"T"_s));
    // The paragraph with its end, as three clicks have it.
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_Down, Qt::ShiftModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
    ExpectHtml(u"<p><b>T</b>xtwo</p>"_s);
    while (Html() != u"<p>one</p><p>two</p>"_s)
        ASSERT_TRUE(m_view.RunCommand(32821));
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, EachOfSeveralPastesComesWhereAndWhenItWasWanted) {
    Open("<p>A</p>");
    const auto key = [](Qt::Key nKey, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), nKey, modifiers);
    };
    const auto undoAll = [this] {
        while (Html() != u"<p>A</p>"_s)
            ASSERT_TRUE(m_view.RunCommand(32821));
    };
    // The second is wanted before the program knows of the first.
    Offer(Offered(u"<b>T</b>"_s, u"T"_s));
    Key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_X);
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_Z);
    ExpectHtml(u"<p><b>T</b>x<b>T</b>zA</p>"_s);
    undoAll();
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    key(Qt::Key_X);
    ExpectHtml(u"<p><b>T</b>TxA</p>"_s);
    undoAll();
    Key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_Return);
    ExpectHtml(u"<p><b>T</b></p><p>A</p>"_s);
    undoAll();
    Key(Qt::Key_End, {});
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_Return);
    key(Qt::Key_Y);
    ExpectHtml(u"<p>A<b>T</b></p><p>y</p>"_s);
    undoAll();
    // The save takes along what was wanted before it, whatever the page has come to.
    key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(m_view.RunCommand(32825));
    EXPECT_TRUE(OnDisk().contains(u"<b>T</b>"_s)) << OnDisk();
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, APasteThatIsGivenUpLeavesNothing) {
    Open("<p>A</p>");
    m_world.Folder.Write(u"大.zip"_s, QByteArray(100'000'000, 'x'));
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(m_world.Folder.Native(u"大.zip"_s))});
    m_world.People.Patience = 0;
    m_world.People.GiveUps = {true};
    m_world.People.Expect(u"您取消了粘贴，网页没有改变。"_s);
    Drop(files, {9, 20});
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_world.People.Boxes.size() == 1; }, c_nPatience));
    EXPECT_TRUE(Resources().isEmpty());
    // The same file by the command.
    m_world.People.GiveUps = {true};
    m_world.People.Files = {m_world.Folder.Path(u"大.zip"_s)};
    m_world.People.Expect(u"用户取消了操作！"_s);
    m_view.RunCommand(32836);
    EXPECT_TRUE(Resources().isEmpty());
    ExpectHtml(u"<p>A</p>"_s);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, WhatIsCopiedInAPageStandsInItAsItStood) {
    m_world.Folder.Write(CViewWorld::NodePath(4, u"Content.htm"_s), "x");
    const QString strPage =
        u"<p align=\"center\"><font color=\"#ff0000\" face=\"Arial Blac\"><a id=\"innerlink\" "
        "href=\"../N4/Content.htm#甲\">去</a></font><img src=\"res/A图.png\" border=\"0\"></p><table "
        "width=\"50%\" "
        "bordercolor=\"\" bgcolor=\"#eeeeee\" border=\"1\"><tbody><tr><td>&nbsp;</td></tr></tbody></table>"
        "<p><marquee>m</marquee></p>"_s;
    Open(CodePage::Encode(strPage));
    m_world.Folder.Write(PageFile(u"res\\A图.png"_s), PngOf(Picture(qRgb(255, 0, 0))));
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_SOON(!Html().contains(u"marquee"_s));
    Key(Qt::Key_V, Qt::ControlModifier);
    ExpectHtml(strPage);
    EXPECT_TRUE(m_view.LeaveNode(true));
    // In another page its references lead to where they led.
    Open("<p><br></p>");
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_SOON(Html().contains(u"<marquee>m</marquee>"_s));
    EXPECT_TRUE(Shows(qRgb(255, 0, 0)));
    m_view.RunCommand(32825);
    EXPECT_TRUE(OnDisk().contains(u"<a id=\"innerlink\" href=\"../n4/content.htm#甲\">去</a>"_s)) << OnDisk();
    EXPECT_EQ(Resources().size(), 1);
    EXPECT_TRUE(Shows(qRgb(255, 0, 0)));
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, PicturesBecomeFilesThatOutliveACrashAndComeIntoTheCourseAtTheSave) {
    const QRgb red = qRgb(255, 0, 0), blue = qRgb(0, 0, 255), green = qRgb(0, 255, 0);
    Open("<p>x</p>");
    auto pPicture = std::make_unique<QMimeData>();
    pPicture->setImageData(Picture(red));
    Offer(std::move(pPicture));
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(Shows(red));
    Offer(Offered(u"<p>t<img src=\"data:image/png;base64,"_s +
                      QString::fromLatin1(PngOf(Picture(blue)).toBase64()) +
                      u"\"><img src=\"data:image/png;base64,%%%\" alt=\"broken\"></p>"_s,
                  u"t"_s));
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(Shows(blue));
    EXPECT_TRUE(Html().contains(u"broken"_s));
    m_world.Folder.Write(u"复制 的.png"_s, PngOf(Picture(green)));
    m_world.Folder.Write(u"文.doc"_s, "d");
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(m_world.Folder.Native(u"复制 的.png"_s)),
                   QUrl::fromLocalFile(m_world.Folder.Native(u"文.doc"_s))});
    Drop(files, {9, 20});
    EXPECT_TRUE(Shows(green));
    EXPECT_TRUE(Html().contains(u">文.doc</a>"_s));
    QDir(m_world.Folder.Native()).remove(u"复制 的.png"_s);
    EXPECT_EQ(Waiting().size(), 3);

    // As after a crash: the text is offered with its pictures.
    EXPECT_TRUE(QTest::qWaitFor(
        [this] {
            const auto kept = KeptPages::Read(m_world.pCourse->GetPaths());
            return !kept.isEmpty() && kept.first().strHtml.count(u"<img"_s) == 3;
        },
        c_nPatience));
    const KeptPage kept = KeptPages::Read(m_world.pCourse->GetPaths()).first();
    KeptPages::PutBeside(kept, m_world.pCourse->GetPaths());
    EXPECT_EQ(QDir(m_world.Folder.Native(CCourseWorld::InCourse(u"未保存的网页"_s)))
                  .entryList({u"*.files"_s}, QDir::Dirs)
                  .size(),
              1);
    m_view.RunCommand(32825);
    EXPECT_EQ(OnDisk().count(u"src=\"res/"_s), 3) << OnDisk();
    EXPECT_FALSE(OnDisk().contains(u"file:"_s)) << OnDisk();
    EXPECT_EQ(Resources().size(), 4);
    EXPECT_TRUE(m_view.LeaveNode(true));
    EXPECT_TRUE(Waiting().isEmpty());
    OpenAgain();
    for (const QRgb colour : {red, blue, green})
        EXPECT_TRUE(Shows(colour));
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, APictureThatIsGivenUpOrCantBeWrittenIsSaidToBeSo) {
    Open("<p>x</p>");
    const auto offer = [] {
        auto pPicture = std::make_unique<QMimeData>();
        pPicture->setImageData(Picture(qRgb(255, 0, 0)));
        Offer(std::move(pPicture));
    };
    offer();
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(Shows(qRgb(255, 0, 0)));
    // Undone and done again it is still there.
    m_view.RunCommand(32821);
    ExpectHtml(u"<p>x</p>"_s);
    m_view.RunCommand(32822);
    EXPECT_TRUE(Shows(qRgb(255, 0, 0)));
    LeaveWith(BoxAnswer::No);
    EXPECT_TRUE(Waiting().isEmpty());

    // Where the folder of unsaved texts should stand stands a file.
    const QString strUnsaved = m_world.Folder.Native(CCourseWorld::InCourse(u"Data\\Unsaved"_s));
    QDir(strUnsaved).removeRecursively();
    m_world.Folder.Write(CCourseWorld::InCourse(u"Data\\Unsaved"_s), "x");
    OpenAgain();
    m_world.People.ExpectBeginning(u"图片没有能够粘贴到网页中。\n\n无法打开文件"_s);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_SOON(m_world.People.Boxes.size() == 2);
    ExpectHtml(u"<p>x</p>"_s);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, APictureThatWasCutInAPageOutlivesIt) {
    const QRgb red = qRgb(255, 0, 0);
    const auto cutPicture = [&] {
        Open("<p>x</p>");
        auto pPicture = std::make_unique<QMimeData>();
        pPicture->setImageData(Picture(red));
        Offer(std::move(pPicture));
        Key(Qt::Key_V, Qt::ControlModifier);
        EXPECT_TRUE(Shows(red));
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_X, Qt::ControlModifier);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !Html().contains(u"<img"_s); }, c_nPatience));
        LeaveWith(BoxAnswer::No);
        EXPECT_EQ(Waiting().size(), 1);
    };
    cutPicture();
    Open("<p>y</p>");
    m_view.RunCommand(32796);
    EXPECT_TRUE(Shows(red));
    // A file of the page's own, and one however often it is pasted.
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Html().count(u"<img"_s) == 2; }, c_nPatience));
    EXPECT_EQ(Waiting().size(), 2);
    m_view.RunCommand(32825);
    EXPECT_TRUE(OnDisk().contains(u"src=\"res/"_s)) << OnDisk();
    EXPECT_TRUE(m_view.LeaveNode(true));
    EXPECT_EQ(Waiting().size(), 1) << "the clipboard still names it";
    // What nothing names goes with the next page that is left.
    QApplication::clipboard()->clear();
    Open("<p>z</p>");
    EXPECT_TRUE(m_view.LeaveNode(true));
    EXPECT_TRUE(Waiting().isEmpty());
}

TEST_F(PastingTest, WhatIsTooMuchComesAsPlainTextOrIsSaidToBeTooMuch) {
    Open("<p>onetwo</p>");
    m_world.People.ExpectBeginning(u"剪贴板中的内容过长，或者过于复杂，已经只粘贴其中的文字"_s);
    Offer(Offered(u"<div>"_s.repeated(5000), u"深\n 处"_s));
    Key(Qt::Key_V, Qt::ControlModifier);
    ExpectHtml(u"<p>深<br>&nbsp;处onetwo</p>"_s);
    m_view.RunCommand(32821);
    // Thousands of paragraphs don't take the square of their time.
    Offer(Offered(u"<p style='color:red'>段<b>落</b></p>"_s.repeated(6000), u"t"_s));
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_SOON(Html().count(u"落"_s) == 6000);
    m_view.RunCommand(32821);
    m_world.People.Expect(u"剪贴板中的内容过长，没有粘贴。\n系统建议您分几次粘贴，或者拆分成较小的页面。"_s);
    Offer(Offered(u"<p>"_s + u"长 "_s.repeated(600'000), u"长 "_s.repeated(600'000)));
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_SOON(m_world.People.Boxes.size() == 2);
    ExpectHtml(u"<p>onetwo</p>"_s);
    EXPECT_TRUE(m_view.LeaveNode(true));
    // Nor does a large page of lines without a paragraph take seconds.
    Open(QByteArray("a<br>\n").repeated(3000));
    Offer(Offered(u"<p>1</p><p>2</p>"_s, u"t"_s));
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Html().startsWith(u"<p>1</p><p>2</p>"_s); }, c_nPatience));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Html().startsWith(u"<p>1</p><p>2z</p>a<br>"_s); }, c_nPatience));
    while (Html().startsWith(u"<p>"_s))
        ASSERT_TRUE(m_view.RunCommand(32821));
    EXPECT_TRUE(m_view.LeaveNode(true));
}

TEST_F(PastingTest, TheMiddleButtonPastesWhatIsMarkedElsewhereAsText) {
    QClipboard& clipboard = *QApplication::clipboard();
    if (!clipboard.supportsSelection())
        GTEST_SKIP() << "this platform has no such thing";
    Open("<p>onetwo</p>");
    clipboard.setText(u"<b>x</b>"_s, QClipboard::Selection);
    QTest::mouseClick(Surface("design").findChild<QWidget*>(u"webView"_s)->focusProxy(), Qt::MiddleButton, {},
                      {9, 20});
    ExpectHtml(u"<p>&lt;b&gt;x&lt;/b&gt;onetwo</p>"_s);
    m_view.RunCommand(32821);
    EXPECT_TRUE(m_view.LeaveNode(true));
}

} // namespace
