// What each command leaves in the page, and where the caret stands then: the rows of commands_html.tsv.
#include "tests/editor_ui/EditorFixture.h"
#include "tests/support/Cases.h"

#include "content/BookTree.h"
#include "platform/ui/SurfaceUrls.h"

#include <QColorDialog>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>

namespace {

struct SRow {
    int nLine = 0;
    int nCommand = 0;
    QString strAnswer, strBefore, strAfter;
};

/// A function: reads the selection's marks out of the page, or writes them into a copy of it.
const QString c_strMarks = QString::fromUtf8(ReadTestFile(VOREL_EDITOR_TESTS "/marks.js")).trimmed();

class CommandsHtmlTest : public CEditorFixture {
protected:
    /// Looks into the page beside the surface, which has no use for a selection that a program makes.
    QString Look(const QString& strScript) {
        QString strResult;
        QEventLoop loop;
        Surface("design").findChild<QWebEngineView*>()->page()->runJavaScript(
            strScript, QWebEngineScript::ApplicationWorld, [&](const QVariant& result) {
                strResult = result.toString();
                loop.quit();
            });
        loop.exec();
        return strResult;
    }
    QString Marked() {
        static const QRegularExpression s_copy(u"\"res/[^\"]*"_s);
        return Look(c_strMarks + u"(false)"_s)
            .replace(m_strFolder, u"$FOLDER"_s)
            .replace(u"../n%1/"_s.arg(m_pTarget->GetId()), u"../$NODE/"_s)
            .replace(s_copy, u"\"res/$FILE"_s);
    }
    void Put(const QString& strMarked) {
        CWebBrowser2Ex& design = Surface("design");
        ASSERT_TRUE(design.SetBrowserBodyInnerHTML(strMarked));
        Look(c_strMarks + u"(true)"_s);
        // What was done so far can't be undone.
        ASSERT_TRUE(design.SetBrowserDesignMode(true));
    }
    /// The text once more through the parser: what does not stay costs something from one saving to the next.
    bool IsStable(const QString& strHtml) {
        const QString strJson =
            QString::fromUtf8(QJsonDocument(QJsonArray{strHtml}).toJson(QJsonDocument::Compact));
        return Look(u"(function (d, text) { d.innerHTML = text; return d.innerHTML; })"
                    "(document.createElement('div'), ..."_s +
                    strJson + u')') == strHtml;
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        ASSERT_SOON(HasFocus());
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    /// On the screen: the middle of what is taken (the selection, where none is named), or where it goes in.
    QPoint PlaceOf(const QString& strWhat, bool bMiddle) {
        const QString strRect = Look(uR"((function (what, middle) {
          const element = /^[a-z]{2,}$|^a$/.test(what) ? document.querySelector(what) : null;
          const range = document.createRange();
          const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
          while (!element && what && walker.nextNode()) {
            const at = walker.currentNode.data.indexOf(what);
            if (at >= 0)
              range.setStart(walker.currentNode, at);
          }
          const box = (element || (what ? range : getSelection().getRangeAt(0))).getClientRects()[0];
          return [box.left + (middle || element ? box.width / 2 : 0), box.top + box.height / 2].join();
        })('%1', %2))"_s.arg(strWhat, bMiddle ? u"true"_s : u"false"_s));
        const QStringList parts = strRect.split(u',');
        return Surface("design").findChild<QWebEngineView*>()->mapToGlobal(
            QPointF(parts.value(0).toDouble(), parts.value(1).toDouble()).toPoint());
    }
    /// The mouse goes there as a hand takes it: a program's own events begin no drag.
    void Drag(const QPoint& from, const QPoint& to, bool bCopy) {
        QStringList input;
        const auto move = [&](const QPoint& place) {
            input << u"mousemove"_s << QString::number(place.x()) << QString::number(place.y()) << u"sleep"_s
                  << u"0.1"_s;
        };
        move(from);
        input << u"mousedown"_s << u"1"_s << u"sleep"_s << u"0.1"_s;
        for (const int nPart : {1, 2, 3, 4})
            move(from + (to - from) * nPart / 4);
        if (bCopy)
            input << u"keydown"_s << u"ctrl"_s;
        move(to + QPoint(0, 1));
        input << u"mouseup"_s << u"1"_s;
        if (bCopy)
            input << u"sleep"_s << u"0.1"_s << u"keyup"_s << u"ctrl"_s;
        QProcess hand;
        hand.start(u"xdotool"_s, input);
        EXPECT_SOON(hand.state() == QProcess::NotRunning);
    }

    /// What the person chooses and types in the dialog of a command.
    void Answer(const SRow& row) {
        const bool bFile = (row.nCommand >= 32790 && row.nCommand <= 32792) || row.nCommand == 32836 ||
                           row.nCommand == 32871;
        const QStringList parts = row.strAnswer.split(u';');
        if (row.nCommand == 32871 || row.nCommand == 32908)
            m_world.People.Expect(row.nCommand == 32871 ? u"重新设置模板将丢失已有的内容，您继续吗？"_s
                                                        : u"您确定清空已有内容吗？"_s);
        if (row.strAnswer.isEmpty())
            return;
        if (bFile) {
            m_world.People.Files.push_back(
                QString(row.strAnswer).replace(u"$FOLDER"_s, m_world.Folder.Path(QString())));
            return;
        }
        m_hand.disconnect();
        QObject::connect(&m_hand, &QTimer::timeout, &m_hand, [this, parts] {
            QWidget* pDialog = QApplication::activeModalWidget();
            if (pDialog == nullptr || CWebBrowser2Ex::IsCallRunning())
                return;
            if (auto* pNodes = pDialog->findChild<QTreeView*>(u"nodes"_s))
                return ChooseNode(*pDialog, *pNodes);
            m_hand.stop();
            if (auto* pColours = qobject_cast<QColorDialog*>(pDialog)) {
                pColours->setCurrentColor(QColor(parts[0]));
                return pColours->accept();
            }
            for (const QString& strPart : parts) {
                const qsizetype nEquals = strPart.indexOf(u'=');
                auto* pField = nEquals > 0 ? pDialog->findChild<QLineEdit*>(strPart.left(nEquals)) : nullptr;
                if (pField)
                    pField->setText(strPart.mid(nEquals + 1));
                else
                    pDialog->findChild<QLineEdit*>()->setText(strPart);
            }
            pDialog->findChild<QPushButton*>(u"ok"_s)->click();
        });
        m_hand.start(10);
    }

    void ChooseNode(QWidget& dialog, QTreeView& nodes) {
        nodes.setCurrentIndex(static_cast<CBookTree*>(nodes.model())->Find(m_pTarget->GetId()));
        if (dialog.findChild<QLineEdit*>(u"location"_s)->text().endsWith(u".htm"_s))
            dialog.findChild<QPushButton*>(u"ok"_s)->click();
    }

    void Run(const SRow& row) {
        if (auto* pBox = m_view.findChild<QComboBox*>(u"box_%1"_s.arg(row.nCommand))) {
            pBox->setCurrentIndex(pBox->findText(row.strAnswer));
            Q_EMIT pBox->activated(pBox->currentIndex());
            return;
        }
        Answer(row);
        EXPECT_TRUE(m_view.RunCommand(row.nCommand));
        m_hand.stop();
        // Where no window manager does it, the end of a dialog leaves the keyboard to nobody.
        m_view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_view));
    }

    std::unique_ptr<CBookNode> m_pTarget = m_world.MakePage(u"目标"_s, "<p>t</p>");
    QString m_strFolder = SurfaceUrls::PathToReference(m_world.Folder.Path(QString()));
    QTimer m_hand;
};

std::vector<SRow> ReadRows() {
    std::vector<SRow> rows;
    int nLine = 0;
    for (const QString& strLine :
         QString::fromUtf8(ReadTestFile(VOREL_EDITOR_TESTS "/commands_html.tsv")).split(u'\n')) {
        ++nLine;
        const QStringList parts = strLine.split(u'\t');
        if (!strLine.isEmpty() && !strLine.startsWith(u'#') && parts.size() == 4)
            rows.push_back(
                {nLine, parts[0].toInt(), parts[1], parts[2], QString(parts[3]).replace(u"\\n"_s, u"\n"_s)});
    }
    return rows;
}

TEST_F(CommandsHtmlTest, EachLeavesWhatStandsInTheTableAndCanBeUndone) {
    Open("<p>x</p>");
    m_world.Folder.Write(u"讲义 A.DOC"_s, "x");
    const QRegularExpression marks(u"[][|]"_s);
    ASSERT_GT(ReadRows().size(), 60U);
    for (const SRow& row : ReadRows()) {
        SCOPED_TRACE("line " + std::to_string(row.nLine) + ", command " + std::to_string(row.nCommand));
        Put(row.strBefore);
        const QString strBefore = Marked();
        EXPECT_EQ(strBefore, row.strBefore);
        Run(row);
        // What is pasted is read and cleaned from the event loop.
        EXPECT_SOON(row.nCommand != 32796 || Marked() == row.strAfter);
        const QString strAfter = Marked();
        EXPECT_EQ(strAfter, row.strAfter);
        const QString strHtml = Html();
        EXPECT_TRUE(IsStable(strHtml)) << strHtml;
        m_view.RunCommand(32821);
        if (strHtml == QString(strBefore).remove(marks)) {
            EXPECT_EQ(Marked(), strAfter) << "nothing to undo";
            continue;
        }
        EXPECT_EQ(Marked(), strBefore) << "undone";
        m_view.RunCommand(32822);
        EXPECT_EQ(Marked(), strAfter) << "redone";
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_SOON(Marked() == strBefore) << "undone by key";
        Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_SOON(Marked() == strAfter) << "redone by key";
    }
}

TEST_F(CommandsHtmlTest, AllThatWasDoneToAPageIsUndoneInItsOrderAndRedone) {
    Open("<p>x</p>");
    Put(u"<p>ab|cd</p>"_s);
    for (const QString& strName : {u"a.png"_s, u"b.png"_s})
        ASSERT_TRUE(QImage(40, 40, QImage::Format_RGB32).save(m_world.Folder.Native(strName)));
    const auto replaceAll = [this](const QString& strFrom, const QString& strTo) {
        EXPECT_TRUE(Surface("design").SetBrowserBodyInnerHTML(Html().replace(strFrom, strTo)));
    };
    const std::pair<const char*, std::function<void()>> steps[] = {
        {"typing", [&] { Type(u"中文"_s); }},
        {"typing elsewhere at once",
         [&] {
             Look(u"getSelection().selectAllChildren(document.querySelector('p'));"
                  "getSelection().collapseToEnd()"_s);
             Type(u"尾"_s);
         }},
        {"a table",
         [&] {
             Run({0, 32837, u"rows=1;columns=1"_s, {}, {}});
         }},
        {"typing behind the table", [&] { Type(u"后"_s); }},
        {"a new paragraph", [&] { Press(Qt::Key_Return, Qt::NoModifier); }},
        {"a picture",
         [&] {
             Run({0, 32790, u"$FOLDERa.png"_s, {}, {}});
         }},
        {"another picture, and a name that no script may give",
         [&] { replaceAll(u"a.png\""_s, u"b.png\" x\""_s); }},
        {"typing behind the picture", [&] { Type(u"图"_s); }},
        {"erasing", [&] { Press(Qt::Key_Backspace, Qt::NoModifier); }},
        {"the table changed",
         [&] {
             Look(u"getSelection().collapse(document.querySelector('td').firstChild, 0)"_s);
             Run({0, 32838, u"rows=3;columns=2;border=5"_s, {}, {}});
         }},
        {"typing in the cell", [&] { Type(u"格"_s); }},
        {"the source edited", [&] { replaceAll(u"<p>ab"_s, u"<h1>new</h1><p>ab"_s); }},
        {"all in bold",
         [&] {
             Run({0, 32823, {}, {}, {}});
             Run({0, 32779, {}, {}, {}});
         }},
        {"all in bold and red",
         [&] {
             Run({0, 32782, u"#ff0000"_s, {}, {}});
         }},
        {"cutting all by key", [&] { Press(Qt::Key_X, Qt::ControlModifier); }},
        {"pasting by key", [&] { Press(Qt::Key_V, Qt::ControlModifier); }},
        {"clearing",
         [&] {
             Run({0, 32908, {}, {}, {}});
         }},
    };
    QStringList states{Html()};
    for (const auto& [szWhat, run] : steps) {
        run();
        EXPECT_SOON(Html() != states.last()) << szWhat;
        states.append(Html());
    }
    const auto expect = [&](qsizetype nState, Qt::KeyboardModifiers modifiers, const char* szWhat) {
        Press(Qt::Key_Z, modifiers);
        EXPECT_SOON(Html() == states[nState]) << szWhat << ": " << Html() << "\nand not " << states[nState];
    };
    for (qsizetype i = states.size() - 1; i > 0; --i)
        expect(i - 1, Qt::ControlModifier, steps[i - 1].first);
    m_view.RunCommand(32821);
    EXPECT_EQ(Html(), states.first()) << "nothing is left to be undone";
    for (qsizetype i = 1; i < states.size(); ++i)
        expect(i, Qt::ControlModifier | Qt::ShiftModifier, steps[i - 1].first);
    m_view.RunCommand(32822);
    EXPECT_EQ(Html(), states.last()) << "nothing is left to be redone";
}

TEST_F(CommandsHtmlTest, SavingIsNoStepAndLeavesTheCaret) {
    Open("<p>x</p>");
    for (const QString& strName : {u"a.png"_s, u"b.png"_s})
        ASSERT_TRUE(QImage(40, 40, QImage::Format_RGB32).save(m_world.Folder.Native(strName)));
    const QString strA = u"<img src=\"%1a.png\">"_s.arg(m_strFolder);
    const QString strB = u"<img src=\"%1b.png\">"_s.arg(m_strFolder);
    Put(u"<p>[%1]</p>\n<p>%1</p>\n<p>mid</p>\n<p>%2</p>"_s.arg(strA, strB));
    m_view.RunCommand(32820);
    Look(u"getSelection().selectAllChildren(document.querySelectorAll('p')[2]);"
         "getSelection().collapseToEnd()"_s);
    m_view.RunCommand(32825);
    const QString strPicture = u"<img src=\"res/$FILE\">"_s;
    const QString strRest = u"</p>\n<p>"_s + strPicture + u"</p>"_s;
    Type(u"后"_s);
    EXPECT_EQ(Marked(), u"<p><br></p>\n<p>"_s + strPicture + u"</p>\n<p>mid后|"_s + strRest);
    m_view.RunCommand(32821);
    EXPECT_EQ(Marked(), u"<p><br></p>\n<p>"_s + strPicture + u"</p>\n<p>mid|"_s + strRest);
    m_view.RunCommand(32821);
    EXPECT_EQ(Marked(), u"<p>["_s + strPicture + u"]</p>\n<p>"_s + strPicture + u"</p>\n<p>mid"_s + strRest);
}

TEST_F(CommandsHtmlTest, WhatIsTypedBehindALinkIsNoLink) {
    Open("<p>x</p>");
    const std::pair<int, QString> rows[] = {{32848, u"http://h/"_s}, {32850, u"帮助"_s}};
    for (const auto& [nCommand, strAnswer] : rows) {
        Put(u"<p>a[b]</p>"_s);
        Run({0, nCommand, strAnswer, {}, {}});
        Type(u"后"_s);
        EXPECT_TRUE(Html().endsWith(u"</a>后</p>"_s)) << Html();
    }
}

TEST_F(CommandsHtmlTest, WhatIsTypedBehindAButtonIsNotItsLabel) {
    Open("<p>x</p>");
    Put(u"<p>a|b</p>"_s);
    Run({0, 32843, {}, {}, {}});
    Type(u"后"_s);
    EXPECT_EQ(Html(), u"<p>a<button type=\"button\">按钮</button>后b</p>"_s);
    Put(u"<p><button>a</button></p>"_s);
    Look(u"getSelection().collapse(document.querySelector('button').firstChild, 0)"_s);
    Press(Qt::Key_End, Qt::NoModifier);
    Press(Qt::Key_Z, Qt::NoModifier);
    EXPECT_SOON(Html() == u"<p><button>a</button>z</p>"_s) << Html();
    Put(u"<p><button>[a]</button></p>"_s);
    Press(Qt::Key_B, Qt::NoModifier);
    Press(Qt::Key_C, Qt::NoModifier);
    EXPECT_SOON(Html() == u"<p><button>bc</button></p>"_s) << Html();
}

TEST_F(CommandsHtmlTest, WhatIsTypedBehindATableIsAParagraph) {
    Open("<p>x</p>");
    Put(u"|"_s);
    Run({0, 32837, u"rows=1;columns=1"_s, {}, {}});
    Type(u"表后"_s);
    // The caret and the end of the composing come behind the text.
    const auto endsWith = [this](const QString& strEnd) {
        EXPECT_SOON(Marked().endsWith(strEnd)) << Marked();
    };
    endsWith(u"</table><p>表后|</p>"_s);
    Press(Qt::Key_Z, Qt::ControlModifier);
    endsWith(u"</table>|"_s);
}

TEST_F(CommandsHtmlTest, WhatIsDraggedInThePageKeepsItsMarkupAndIsOneStep) {
    if (QStandardPaths::findExecutable(u"xdotool"_s).isEmpty() || QApplication::platformName() != u"xcb")
        GTEST_SKIP() << "no hand at the mouse of this display";
    Open("<p>x</p>");
    ASSERT_TRUE(
        QImage(40, 30, QImage::Format_RGB32).save(m_world.Folder.Native(PageFile(u"res\\$FILE"_s)), "PNG"));
    for (const SCase& row : ReadCases(VOREL_EDITOR_TESTS "/drags.txt")) {
        SCOPED_TRACE(row.strWhat);
        // What is taken, or the selection where that is empty, goes before a text or into an element.
        const QString &strBefore = row.Texts[0], &strTaken = row.Texts[1], &strTo = row.Texts[2],
                      &strAfter = row.Texts[3];
        Put(strBefore);
        const QString strHtml = Html();
        Drag(PlaceOf(strTaken, true), PlaceOf(strTo, false), row.strWhat.startsWith(u"a copy"));
        EXPECT_SOON(Marked() == strAfter) << Marked();
        m_view.RunCommand(32821);
        EXPECT_EQ(Html(), strHtml);
        EXPECT_FALSE(Surface("design").ExecuteIHTMLDocumentCmd(u"Undo"_s, false, {})) << "two steps";
        m_view.RunCommand(32822);
        EXPECT_EQ(Marked(), strAfter) << "redone";
    }
}

TEST_F(CommandsHtmlTest, WhatIsTypedIntoAFieldIsSavedAndUndone) {
    Open("<p>x</p>");
    const std::pair<QString, QString> rows[] = {
        {u"<p><textarea></textarea></p>"_s, u"<p><textarea>a</textarea></p>"_s},
        {u"<p><input type=\"text\"></p>"_s, u"<p><input type=\"text\" value=\"a\"></p>"_s},
    };
    for (const auto& [strEmpty, strFilled] : rows) {
        Put(strEmpty);
        // As a click into it does.
        Look(u"document.querySelector('textarea, input').focus()"_s);
        Press(Qt::Key_A, Qt::NoModifier);
        EXPECT_SOON(Html() == strFilled) << Html();
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_SOON(Html() == strEmpty) << Html();
        EXPECT_EQ(Look(u"document.querySelector('textarea, input').value"_s), QString());
    }
}

} // namespace
