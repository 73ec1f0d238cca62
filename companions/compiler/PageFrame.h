#pragma once

#include "companions/compiler/Navigation.h"
#include "companions/compiler/SitePlan.h"

#include <QByteArray>
#include <QString>

/// What stands within the frame.
struct FramedContent {
    /// Of the window; the course's name is added.
    QString Title;
    /// More for the head, behind the frame's own parts and before the skin.
    QString Head;
    QString Main;
};

/// Writes the pages of the site: header, tree, content, footer, in UTF-8 and marked as Chinese. May be used
/// by several threads at once.
class CPageFrame {
public:
    /// Without scripts, and what needs them, where the site is to be plain HTML.
    explicit CPageFrame(const CSitePlan& plan, bool bPlain = false);

    /// The page of a node. Content that opens in a window of its own stands without the tree.
    QByteArray NodePage(int nNode, const FramedContent& content) const;
    /// The page "index.html", with which a visitor begins.
    QByteArray StartPage(const FramedContent& content) const;
    /// The page CNavigation::c_szSiteMap: the whole tree.
    QByteArray SiteMapPage() const;
    /// The page FrameParts::c_strSearchPage, which a script fills.
    QByteArray SearchPage() const;

    /// A link to a node from a page in a folder: the opening tag, with what the node's open type asks for.
    QString NodeLink(int nNode, const QString& strFromFolder) const;

    bool HasScripts() const { return !m_bPlain; }
    /// Whether the compiler has to deliver the plain skin.
    static bool HasSkin(const CSitePlan& plan) { return !SkinOf(plan).isEmpty(); }

private:
    static QString SkinOf(const CSitePlan& plan);
    /// What is the same on every page that lies equally deep.
    struct Shell {
        /// Leads from the page to the site's root.
        QByteArray Up;
        QByteArray Sheets;
        QByteArray Skin;
        QByteArray Header;
        QByteArray Tools;
        QByteArray Footer;
    };
    Shell MakeShell(qsizetype nDepth) const;
    const Shell& ShellFor(const QString& strFolder, Shell& own) const;
    void AppendHead(QByteArray& out, const Shell& shell, const FramedContent& content,
                    const char* szBodyClass) const;
    QByteArray RootPage(const FramedContent& content, const char* szBodyClass, const QByteArray& main) const;

    const CSitePlan& m_plan;
    CNavigation m_navigation;
    const bool m_bPlain;
    QString m_strSkin;
    QByteArray m_courseTitle;
    /// Of pages in the root, in node folders and in folders of those.
    QList<Shell> m_shells;
};
