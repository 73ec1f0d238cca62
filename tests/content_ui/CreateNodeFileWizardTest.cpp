#include "content/ui/CreateNodeFileWizard.h"

#include "content/ContentKinds.h"
#include "content/Texts.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/WindowHelp.h"

#include <QDropEvent>
#include <QMimeData>
#include <QToolTip>

namespace {

class CreateNodeFileWizardTest : public ::testing::Test {
protected:
    CTempFolder m_folder;
    CScriptedPeople m_people;
    std::optional<QString> m_link;
    std::unique_ptr<CCreateNodeFileWizard> m_pWizard;

    void Open(const ContentPreset& preset) {
        m_pWizard = std::make_unique<CCreateNodeFileWizard>(
            m_people, preset,
            [this](QWidget*, const QString&) { return std::exchange(m_link, std::nullopt); }, nullptr);
        m_pWizard->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_pWizard.get()));
    }
    /// Opens the second page for a kind.
    void Open(EContentKind kind) {
        Open(ContentKinds::PresetFor(kind, {}));
        Press(Qt::Key_Return);
        EXPECT_EQ(m_pWizard->currentPage()->title(), ContentText::c_strParamsPage);
    }
    template <typename CWidget = QLineEdit>
    CWidget& The(const QString& strName) {
        return ::The<CWidget>(*m_pWizard, strName);
    }
    void Press(Qt::Key key) { QTest::keyClick(m_pWizard->focusWidget(), key); }
    /// Presses Finish: what it refuses, and where the focus is then.
    void Refused(const QString& strMessage, const QString& strFocus) {
        m_people.Expect(strMessage);
        The<QPushButton>(u"finish"_s).setFocus();
        Press(Qt::Key_Return);
        EXPECT_EQ(m_pWizard->focusWidget()->objectName(), strFocus) << strMessage;
        EXPECT_TRUE(m_pWizard->isVisible());
        EXPECT_EQ(m_people.Boxes.back().Icon, CScriptedPeople::BoxIcon::Information);
    }
    CNodeFileParams Finished() {
        The<QPushButton>(u"finish"_s).setFocus();
        Press(Qt::Key_Return);
        EXPECT_FALSE(m_pWizard->isVisible());
        return m_pWizard->GetParams();
    }
    /// What is on view of the kinds' own controls, in the order of the Tab key.
    QString Shown() const {
        QStringList names;
        for (const QWidget* p = m_pWizard->nextInFocusChain(); p != m_pWizard.get();
             p = p->nextInFocusChain()) {
            if (p->isVisible() && p->isEnabled() && (p->focusPolicy() & Qt::TabFocus))
                names.append(p->objectName());
        }
        return names.join(u' ');
    }
};

TEST_F(CreateNodeFileWizardTest, EachKindHasItsFieldsAndNoOthers) {
    const char* const shown[] = {"",
                                 " externalFile browseFile comment",
                                 " office0 saveAsHtml",
                                 " siteFolder browseSite homePage browseHomePage",
                                 " linkUrl",
                                 " coursewareFolder browseCourseware",
                                 "",
                                 " importFolder browseImport filters",
                                 " inSiteLink setLink"};
    for (int nKind = 0; nKind < 9; ++nKind) {
        Open(static_cast<EContentKind>(nKind));
        EXPECT_EQ(Shown().toStdString(), std::string("back finish cancel") + shown[nKind]);
        if (nKind == 0 || nKind == 6) {
            EXPECT_EQ(Finished().Kind, static_cast<EContentKind>(nKind));
        }
    }
}

TEST_F(CreateNodeFileWizardTest, TheAdviceIsSeenAtOnceAndNotInTheWay) {
    const ContentPreset preset = ContentKinds::PresetFor(EContentKind::None, u"<b>课</b>"_s);
    Open(preset);
    EXPECT_SOON(QToolTip::isVisible());
    EXPECT_FALSE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }, 500)) << "it was shown too soon";
    EXPECT_TRUE(QToolTip::text().contains(ContentKinds::PresetTip(preset).toHtmlEscaped()));
    EXPECT_TRUE(The<QRadioButton>(u"kind0"_s).hasFocus());
    // A double click takes the kind and goes on.
    QTest::mouseClick(&The<QRadioButton>(u"kind3"_s), Qt::LeftButton);
    QTest::mouseDClick(&The<QRadioButton>(u"kind3"_s), Qt::LeftButton);
    EXPECT_SOON(m_pWizard->focusWidget() == &The(u"siteFolder"_s));
    // Back and forth: what was entered stays, and the kind that is chosen last holds.
    The(u"siteFolder"_s).setText(u"/x"_s);
    m_pWizard->back();
    The<QRadioButton>(u"kind5"_s).click();
    m_pWizard->next();
    m_pWizard->back();
    The<QRadioButton>(u"kind3"_s).click();
    m_pWizard->next();
    EXPECT_EQ(The(u"siteFolder"_s).text(), u"/x"_s);
}

TEST_F(CreateNodeFileWizardTest, FilesAndSites) {
    m_folder.Write(u"站\\首 页.htm"_s, "x");
    m_folder.Write(u"站外\\x.htm"_s, "x");
    Open(EContentKind::ExternalFile);
    Refused(u"请您选择外部文件！"_s, u"externalFile"_s);
    QTest::keyClicks(m_pWizard->focusWidget(), u"x.htm"_s);
    Refused(u"您选择外部文件不存在, 请您重新选择！"_s, u"externalFile"_s);
    EXPECT_EQ(The(u"externalFile"_s).text(), QString());
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(m_folder.Native(u"站\\首 页.htm"_s))});
    QDragEnterEvent enter({1, 1}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&The(u"externalFile"_s), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({1, 1}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&The(u"externalFile"_s), &drop);
    The<QPlainTextEdit>(u"comment"_s).setPlainText(u"一\n二"_s);
    CNodeFileParams params = Finished();
    EXPECT_EQ(params.ExternalFile, m_folder.Path(u"站\\首 页.htm"_s));
    EXPECT_EQ(params.Comment, u"一\r\n二"_s);

    Open(EContentKind::Site);
    const auto browse = [&](const QString& strName) { The<QPushButton>(strName).click(); };
    m_people.Expect(u"请您先选择站点目录"_s);
    browse(u"browseHomePage"_s);
    m_people.Folders = {m_folder.Path(u"站"_s)};
    browse(u"browseSite"_s);
    Refused(u"请您选择站点首页！"_s, u"homePage"_s);
    m_people.Files = {m_folder.Path(u"站\\首 页.htm"_s), m_folder.Path(u"站外\\x.htm"_s), std::nullopt};
    browse(u"browseHomePage"_s);
    m_people.Expect(u"首页不在站点目录内，请您重新选择"_s);
    browse(u"browseHomePage"_s);
    browse(u"browseHomePage"_s);
    EXPECT_EQ(The(u"homePage"_s).text(), m_folder.Native(u"站\\首 页.htm"_s));
    The(u"siteFolder"_s).setText(u" %1/./站// "_s.arg(m_folder.Native()));
    params = Finished();
    EXPECT_EQ(params.SiteFolder, m_folder.Path(u"站"_s)) << "typed as people do";
    EXPECT_EQ(params.SiteHomePage, m_folder.Path(u"站\\首 页.htm"_s));
    EXPECT_EQ(params.OpenType, 0);
}

TEST_F(CreateNodeFileWizardTest, OfficeAndLinks) {
    Open(EContentKind::ExternalEditor);
    Refused(ContentText::c_strNoOfficeKind, u"finish"_s);
    The<QRadioButton>(u"office2"_s).click();
    The<QCheckBox>(u"saveAsHtml"_s).click();
    CNodeFileParams params = Finished();
    EXPECT_TRUE(params.OfficeKind == EOfficeKind::Excel && params.SaveAsHtml);

    Open(EContentKind::ExternalLink);
    EXPECT_EQ(The(u"linkUrl"_s).selectedText(), QString());
    The(u"linkUrl"_s).setText(u"www.a.cn"_s);
    Refused(u"系统检测到您输入的网址不合法，您希望更正输入吗！"_s, u"linkUrl"_s);
    EXPECT_EQ(The(u"linkUrl"_s).text(), u"www.a.cn"_s);
    // Both ways of entering lead to an address.
    The(u"linkUrl"_s).setText(u"http://"_s);
    QTest::keyClicks(&The(u"linkUrl"_s), u"news:80/"_s);
    EXPECT_EQ(The(u"linkUrl"_s).text(), u"http://news:80/"_s);
    The(u"linkUrl"_s).setText(u"http://"_s);
    QApplication::clipboard()->setText(u"https://a.cn/?u=http://b.cn "_s);
    QTest::keyClick(&The(u"linkUrl"_s), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Finished().LinkUrl, u"https://a.cn/?u=http://b.cn"_s);

    Open(EContentKind::InSiteLink);
    Refused(u"对不起，链接地址不能为空！请您选择。"_s, u"inSiteLink"_s);
    m_link = u"file:///Z:/k/N13/Content.htm#a"_s;
    The<QPushButton>(u"setLink"_s).click();
    The<QPushButton>(u"setLink"_s).click(); // and is cancelled
    EXPECT_EQ(Finished().SiteLinkUrl, u"file:///Z:/k/N13/Content.htm#a"_s);
}

TEST_F(CreateNodeFileWizardTest, OnlyTheLastFilterIsTyped) {
    Open(EContentKind::Folder);
    The(u"importFolder"_s).setText(m_folder.Native());
    auto& filters = The<QComboBox>(u"filters"_s);
    auto& typed = The(u"typedFilter"_s);
    EXPECT_FALSE(typed.isEnabled());
    filters.setCurrentIndex(7);
    Refused(u"请您输入过滤文件类型"_s, u"typedFilter"_s);
    QTest::keyClicks(&typed, u"*.doc;*.x"_s);
    EXPECT_EQ(Finished().ImportFilter, u"*.doc;*.x"_s);

    Open(EContentKind::Folder);
    The(u"importFolder"_s).setText(m_folder.Native());
    auto& others = The<QComboBox>(u"filters"_s);
    others.setCurrentIndex(7);
    The(u"typedFilter"_s).setText(u"*.doc"_s);
    others.setCurrentIndex(6);
    EXPECT_TRUE(The(u"typedFilter"_s).text().isEmpty() && !The(u"typedFilter"_s).isEnabled());
    EXPECT_EQ(Finished().ImportFilter, u"*.htm;*.htm;"_s);
}

} // namespace
