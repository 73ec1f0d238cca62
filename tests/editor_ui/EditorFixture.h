#pragma once

#include "editor/ui/EditorView.h"

#include "foundation/CodePage.h"
#include "platform/ui/WebBrowser.h"
#include "tests/editor_ui/ViewHarness.h"

#include <QTabBar>

enum { c_nDesign, c_nSource, c_nPreview };

/// An editor in a window of its own, and the pages of a course.
class CEditorFixture : public ::testing::Test {
protected:
    void Open(const QByteArray& html) {
        m_pNode = m_world.MakePage(u"页 %1"_s.arg(++m_nPages), html);
        OpenAgain();
    }
    void OpenAgain() {
        m_view.m_pNode = m_pNode.get();
        ShowOnScreen(m_view);
        m_view.ShowNode();
        // The engine's first page makes the window anew.
        m_view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_view));
    }
    QString OnDisk() const { return CodePage::Decode(m_world.Folder.Read(PageFile())); }
    QString PageFile(const QString& strBelow = u"Content.htm"_s) const {
        return m_world.NodePath(m_pNode->GetId(), strBelow);
    }
    CWebBrowser2Ex& Surface(const char* szName) {
        return *m_view.findChild<CWebBrowser2Ex*>(QLatin1StringView(szName));
    }
    QString Html(const char* szName = "design") {
        QString strHtml = u"<no answer>"_s;
        EXPECT_TRUE(Surface(szName).GetBrowserBodyInnerHTML(strHtml));
        return strHtml;
    }
    QPlainTextEdit& Source() { return *m_view.findChild<QPlainTextEdit*>(u"source"_s); }
    void Tab(int nTab) { m_view.findChild<QTabBar*>(u"editorTabs"_s)->setCurrentIndex(nTab); }
    QAction& Action(int nId) { return *m_view.findChild<QAction*>(u"command_%1"_s.arg(nId)); }

    /// A changed page is left, and the question for saving answered.
    void LeaveWith(CScriptedPeople::BoxAnswer answer) {
        m_world.People.Expect(u"该文件内容已改变，您需要保存已修改的内容吗？"_s, answer);
        EXPECT_TRUE(m_view.LeaveNode(true));
    }

    bool HasFocus() { return Surface("design").isAncestorOf(QApplication::focusWidget()); }

    /// As an input method types.
    void Type(const QString& strText) {
        Surface("design").setFocus();
        ASSERT_SOON(HasFocus());
        QInputMethodEvent composing(u"pin yin"_s, {});
        QCoreApplication::sendEvent(QApplication::focusObject(), &composing);
        QInputMethodEvent event;
        event.setCommitString(strText);
        QCoreApplication::sendEvent(QApplication::focusObject(), &event);
        ASSERT_SOON(Html().contains(strText)) << Html();
    }

    CViewWorld m_world;
    std::unique_ptr<CBookNode> m_pNode;
    int m_nPages = 0;
    CEditorView m_view{m_world.Host, m_world.People};
};
