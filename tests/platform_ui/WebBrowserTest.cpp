#include "platform/ui/WebBrowser.h"

#include "tests/support/TempFolder.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// A page of its own folder in a surface that edits, as a node's page stands in the course.
class CEditing : public ::testing::Test {
protected:
    void Open(const QByteArray& html) {
        m_folder.Write(u"N5\\Content.htm"_s, html);
        m_browser.resize(640, 480);
        m_browser.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_browser));
        m_browser.SetAllowedFolders({m_folder.Path()}, true);
        ASSERT_TRUE(m_browser.NavigateAndWait(m_folder.Path(u"N5\\Content.htm"_s)));
        ASSERT_TRUE(m_browser.SetBrowserDesignMode(true));
        m_browser.activateWindow();
        m_browser.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_browser));
    }
    QString Html() {
        QString strHtml = u"<no answer>"_s;
        EXPECT_TRUE(m_browser.GetBrowserBodyInnerHTML(strHtml));
        return strHtml;
    }
    void Type(const QString& strText) {
        QInputMethodEvent event;
        event.setCommitString(strText);
        ASSERT_NE(QApplication::focusObject(), nullptr);
        QCoreApplication::sendEvent(QApplication::focusObject(), &event);
    }
    void Command(const QString& strName, const QVariant& value = {}) {
        EXPECT_TRUE(m_browser.ExecuteIHTMLDocumentCmd(strName, false, value)) << strName.toStdString();
    }

    CTempFolder m_folder;
    CWebBrowser2Ex m_browser;
};

} // namespace

TEST_F(CEditing, TextGoesInAndOutAsItStands) {
    Open("<p>old</p>");
    const QString strHtml =
        u"<p align=\"center\">中文 &amp; <b>bold</b>€𠀀</p>\n<table border=\"1\"><tbody><tr><td>&nbsp;</td></tr></tbody></table>"_s;
    ASSERT_TRUE(m_browser.SetBrowserBodyInnerHTML(strHtml));
    EXPECT_EQ(Html(), strHtml);
    ASSERT_TRUE(m_browser.SetBrowserBodyInnerHTML(QString()));
    EXPECT_EQ(Html(), QString());
}

TEST_F(CEditing, TypingThroughTheInputMethod) {
    Open("<p>x</p>");
    Command(u"SelectAll"_s);
    Type(u"输入中文"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Html().contains(u"输入中文"_s); })) << Html().toStdString();
}
