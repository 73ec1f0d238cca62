#include "companions/compiler/PageFrame.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/Texts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype c_nShells = 3;

QByteArray Escaped(const QString& strText) {
    return strText.toHtmlEscaped().toUtf8();
}

qsizetype DepthOf(const QString& strFolder) {
    return strFolder.isEmpty() ? 0 : strFolder.count(u'/') + 1;
}

const QByteArray c_mainEnd = "\n</main>\n";

/// On a phone the tree stands before the content when it is asked for.
QByteArray NavigationBegin() {
    return "</header>\n<div class=\"layout\">\n<nav id=\""_ba + FrameParts::c_szNavigationId +
           "\" class=\"site-nav\" aria-label=\"" + Escaped(CompilerText::c_strNavigation) +
           "\">\n<a class=\"close\" href=\"#" + FrameParts::c_szContentId + "\">" +
           Escaped(CompilerText::c_strCloseNavigation) + "</a>\n";
}

QByteArray MainBegin() {
    return "<main id=\""_ba + FrameParts::c_szContentId + "\" class=\"content\">\n";
}

} // namespace

CPageFrame::CPageFrame(const CSitePlan& plan, bool bPlain)
    : m_plan(plan), m_navigation(plan), m_bPlain(bPlain), m_strSkin(SkinOf(plan)) {
    m_courseTitle = Escaped(plan.Model().Course());
    for (qsizetype i = 0; i < c_nShells; ++i)
        m_shells.append(MakeShell(i));
}

QString CPageFrame::SkinOf(const CSitePlan& plan) {
    return plan.Tree().OutputName(plan.Tree().FindFile(u"skin/site.css"_s));
}

CPageFrame::Shell CPageFrame::MakeShell(qsizetype nDepth) const {
    const CSiteModel& model = m_plan.Model();
    Shell shell;
    shell.Up = QByteArray("../").repeated(nDepth);
    const auto to = [&](const QString& strFile) -> QByteArray {
        return shell.Up + Escaped(RelativeAddress({}, strFile)) + "\">";
    };
    shell.Sheets = "<link rel=\"stylesheet\" href=\"" + to(FrameParts::c_strParts) + '\n';
    shell.Skin = "<link rel=\"stylesheet\" href=\"" +
                 to(!m_strSkin.isEmpty() ? m_strSkin : FrameParts::c_strPlainSkin) + '\n';
    if (!m_bPlain)
        shell.Skin += "<script defer src=\"" + to(FrameParts::c_strScript) + "</script>\n";
    shell.Header = "<header class=\"site-header\">\n";
    if (!model.School().isEmpty())
        shell.Header += "<p class=\"school\">" + Escaped(model.School()) + "</p>\n";
    shell.Header += "<p class=\"course\"><a href=\"" + shell.Up + CNavigation::c_szStartPage + "\">" +
                    m_courseTitle + "</a></p>\n<p class=\"teacher\">" +
                    CompilerText::c_strTeacher.arg(model.Teacher().toHtmlEscaped()).toUtf8() + "</p>\n";
    const QByteArray search = Escaped(CompilerText::c_strSearch);
    const QByteArray navigation = Escaped(CompilerText::c_strNavigation);
    shell.Tools = "<div class=\"site-tools\">\n<a class=\"menu\" href=\"#"_ba + FrameParts::c_szNavigationId +
                  "\">" + navigation + "</a>\n";
    if (!m_bPlain)
        shell.Tools += "<form class=\"search\" role=\"search\" action=\"" + to(FrameParts::c_strSearchPage) +
                       "<input type=\"search\" name=\"q\" aria-label=\"" + search + "\" placeholder=\"" +
                       search + "\"><button>" + Escaped(CompilerText::c_strDoSearch) + "</button></form>\n";
    shell.Tools += "</div>\n";
    QStringList names = {model.School(), model.Course(), model.Teacher()};
    names.removeAll(QString());
    shell.Footer = "<footer class=\"site-footer\"><p>" + Escaped(names.join(u" · "_s)) +
                   "</p>\n<p><a href=\"" + shell.Up + CNavigation::c_szStartPage + "\">" +
                   Escaped(CompilerText::c_strHome) + "</a> · <a href=\"" + shell.Up +
                   CNavigation::c_szSiteMap + "\">" + Escaped(CompilerText::c_strSiteMap) +
                   "</a></p></footer>\n</body>\n</html>\n";
    return shell;
}

const CPageFrame::Shell& CPageFrame::ShellFor(const QString& strFolder, Shell& own) const {
    const qsizetype nDepth = DepthOf(strFolder);
    if (nDepth < m_shells.size())
        return m_shells[nDepth];
    own = MakeShell(nDepth);
    return own;
}

QString CPageFrame::NodeLink(int nNode, const QString& strFromFolder) const {
    QByteArray link;
    m_navigation.AppendLink(link, nNode, QByteArray("../").repeated(DepthOf(strFromFolder)));
    return QString::fromUtf8(link);
}

void CPageFrame::AppendHead(QByteArray& out, const Shell& shell, const FramedContent& content,
                            const char* szBodyClass) const {
    static const QByteArray skip = "\">\n<a class=\"skip\" href=\"#"_ba + FrameParts::c_szContentId + "\">" +
                                   Escaped(CompilerText::c_strSkipLink) + "</a>\n";
    out += "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
    if (!content.Title.isEmpty())
        out += Escaped(content.Title) + " - ";
    out += m_courseTitle + "</title>\n" + shell.Sheets + content.Head.toUtf8() + shell.Skin +
           "</head>\n<body class=\"" + szBodyClass + skip + shell.Header;
}

QByteArray CPageFrame::NodePage(int nNode, const FramedContent& content) const {
    static const QByteArray mainBegin = MainBegin();
    static const QByteArray navigation = NavigationBegin();
    const NodePlan& plan = m_plan.Of(nNode);
    Shell own;
    const Shell& shell = ShellFor(FolderOf(plan.PagePath), own);
    const bool bAlone = plan.OpenType != 0;
    const QByteArray main = content.Main.toUtf8();
    QByteArray out;
    out.reserve(main.size() + 12000);
    AppendHead(out, shell, content, bAlone ? "vorel-site alone" : "vorel-site");
    if (bAlone)
        return out + "</header>\n" + mainBegin + main + c_mainEnd + shell.Footer;
    out += shell.Tools + navigation;
    m_navigation.AppendTree(out, nNode, shell.Up);
    out += "</nav>\n" + mainBegin;
    m_navigation.AppendPath(out, nNode, shell.Up);
    out += main;
    m_navigation.AppendNeighbours(out, nNode, shell.Up);
    return out + c_mainEnd + "</div>\n" + shell.Footer;
}

QByteArray CPageFrame::RootPage(const FramedContent& content, const char* szBodyClass,
                                const QByteArray& main) const {
    const Shell& shell = m_shells[0];
    QByteArray out;
    AppendHead(out, shell, content, szBodyClass);
    out += shell.Tools + NavigationBegin();
    m_navigation.AppendTree(out, -1, shell.Up);
    return out + "</nav>\n" + MainBegin() + main + c_mainEnd + "</div>\n" + shell.Footer;
}

QByteArray CPageFrame::StartPage(const FramedContent& content) const {
    return RootPage(content, "vorel-site start", content.Main.toUtf8());
}

QByteArray CPageFrame::SiteMapPage() const {
    const QByteArray title = Escaped(CompilerText::c_strSiteMap);
    return RootPage({CompilerText::c_strSiteMap, {}, {}}, "vorel-site",
                    "<h1 class=\"node-title\">" + title + "</h1>\n<nav aria-label=\"" + title + "\">\n" +
                        m_navigation.SiteMap() + "</nav>");
}

QByteArray CPageFrame::SearchPage() const {
    const QByteArray search = Escaped(CompilerText::c_strSearch);
    return RootPage(
        {CompilerText::c_strSearch,
         u"<script defer src=\""_s + FrameParts::c_strSearchScript + u"\"></script>\n"_s,
         {}},
        "vorel-site",
        "<h1 class=\"node-title\">" + search + "</h1>\n<p id=\"v-found\" role=\"status\">" +
            Escaped(CompilerText::c_strSearchHint) +
            "</p>\n<ol id=\"v-results\" class=\"results\"></ol>\n"
            "<p><button id=\"v-more\" class=\"button\" type=\"button\" hidden>" +
            Escaped(CompilerText::c_strMoreResults) + "</button></p>\n<noscript><p>" +
            CompilerText::c_strNoScript.arg(QString::fromLatin1(CNavigation::c_szSiteMap)).toUtf8() +
            "</p></noscript>");
}
