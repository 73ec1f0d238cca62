#include "companions/compiler/PageFrame.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// A course of up to this many nodes has its whole tree in every page. In a larger one a page shows its own
/// branch, or the site would grow with the square of the course.
constexpr qsizetype c_nWholeTree = 300;
/// How many siblings a large course shows on each side, and how many levels above.
constexpr qsizetype c_nSiblingsAround = 60;
constexpr int c_nLevelsAbove = 40;

const QString c_strStartPage = u"index.html"_s;

QString Escaped(const QString& strText) {
    return strText.toHtmlEscaped();
}

} // namespace

/// Writes the tree as nested lists, the branch of the current node open.
class CPageFrame::CTreeWriter {
public:
    CTreeWriter(const CPageFrame& frame, int nCurrent, const QString& strFolder)
        : m_frame(frame), m_nodes(frame.m_plan.Model().Nodes()), m_nCurrent(nCurrent), m_strFolder(strFolder),
          m_bWhole(m_nodes.size() <= c_nWholeTree) {
        for (int n = nCurrent; n >= 0; n = m_nodes[n].Parent)
            m_path.insert(n);
    }

    QString Write() {
        const int nTop = Top();
        m_strOut = u"<ul class=\"tree\">\n"_s;
        if (nTop == 0 && m_nodes[0].Row.Type != NodeType::c_nEmpty)
            WriteLeaf(0);
        WriteChildren(nTop);
        return m_strOut + u"</ul>\n"_s;
    }

private:
    /// The node below which the tree begins: the root, but far down in a large course.
    int Top() const {
        int nTop = qMax(m_nCurrent, 0);
        for (int nLevels = 0; nTop > 0 && (m_bWhole || nLevels < c_nLevelsAbove); ++nLevels)
            nTop = m_nodes[nTop].Parent;
        return nTop;
    }

    void WriteLeaf(int nNode) { m_strOut += u"<li>"_s + Link(nNode) + u"</li>\n"_s; }

    QString Link(int nNode) const {
        const QString strCurrent = nNode == m_nCurrent ? u" aria-current=\"page\""_s : QString();
        return m_frame.NodeLink(nNode, m_strFolder, strCurrent) + Escaped(m_nodes[nNode].Row.Title) +
               u"</a>"_s;
    }

    bool ShowsChildren(int nNode) const {
        // A node whose content opens by itself has no page on which its children would show.
        return !m_nodes[nNode].Children.isEmpty() &&
               (m_bWhole || m_path.contains(nNode) || m_frame.m_plan.Of(nNode).PagePath.isEmpty());
    }

    void WriteNode(int nNode) {
        if (!ShowsChildren(nNode))
            return WriteLeaf(nNode);
        m_strOut += m_path.contains(nNode) ? u"<li><details open>"_s : u"<li><details>"_s;
        m_strOut += u"<summary>"_s + Link(nNode) + u"</summary>\n<ul>\n"_s;
        WriteChildren(nNode);
        m_strOut += u"</ul>\n</details></li>\n"_s;
    }

    void WriteChildren(int nParent) {
        const QList<int>& children = m_nodes[nParent].Children;
        qsizetype nFirst = 0;
        qsizetype nEnd = children.size();
        if (!m_bWhole) {
            qsizetype nAt = 0;
            while (nAt < children.size() && !m_path.contains(children[nAt]))
                ++nAt;
            nAt = nAt == children.size() ? 0 : nAt;
            nFirst = qMax(nAt - c_nSiblingsAround, qsizetype(0));
            nEnd = qMin(nAt + c_nSiblingsAround + 1, children.size());
        }
        for (qsizetype i = nFirst; i < nEnd; ++i)
            WriteNode(children[i]);
        if (nEnd - nFirst < children.size())
            WriteMore(nParent);
    }

    void WriteMore(int nParent) {
        const NodePlan& plan = m_frame.m_plan.Of(nParent);
        const bool bListed = nParent > 0 && plan.View == ENodeView::List;
        const QString strList = bListed ? plan.PagePath : c_strStartPage;
        m_strOut += u"<li><a href=\""_s + Escaped(RelativeAddress(m_strFolder, strList)) + u"\">"_s +
                    CompilerText::c_strMoreSiblings.arg(m_nodes[nParent].Children.size()) + u"</a></li>\n"_s;
    }

    const CPageFrame& m_frame;
    const QList<SiteNode>& m_nodes;
    int m_nCurrent;
    QString m_strFolder;
    bool m_bWhole;
    QSet<int> m_path;
    QString m_strOut;
};

CPageFrame::CPageFrame(const CSitePlan& plan)
    : m_plan(plan), m_strSkin(plan.Tree().FindFile(u"skin/site.css"_s)) {
    m_strSkin = plan.Tree().OutputName(m_strSkin);
}

QString CPageFrame::NodeLink(int nNode, const QString& strFromFolder, const QString& strMore) const {
    const NodePlan& plan = m_plan.Of(nNode);
    // A node with a page of its own keeps the fragment for what that page embeds.
    const QString strFragment = plan.PagePath.isEmpty() ? plan.Fragment : QString();
    const QString strAddress =
        plan.TargetIsAddress ? plan.Target : RelativeAddress(strFromFolder, plan.Target) + strFragment;
    QString strLink = u"<a href=\""_s + Escaped(strAddress) + u'"' + strMore;
    if (plan.OpenType != 0)
        strLink +=
            u" target=\"_blank\" rel=\"noopener\" data-open=\""_s + QString::number(plan.OpenType) + u'"';
    return strLink + u'>';
}

QString CPageFrame::Navigation(int nCurrent, const QString& strFolder) const {
    return u"<nav class=\"site-nav\" aria-label=\""_s + CompilerText::c_strNavigation + u"\">\n"_s +
           CTreeWriter(*this, nCurrent, strFolder).Write() + u"</nav>\n"_s;
}

QString CPageFrame::Header(const QString& strFolder) const {
    const CSiteModel& model = m_plan.Model();
    QString strHeader = u"<header class=\"site-header\">\n"_s;
    if (!model.School().isEmpty())
        strHeader += u"<p class=\"school\">"_s + Escaped(model.School()) + u"</p>\n"_s;
    return strHeader + u"<p class=\"course\"><a href=\""_s + RelativeAddress(strFolder, c_strStartPage) +
           u"\">"_s + Escaped(model.Course()) + u"</a></p>\n<p class=\"teacher\">"_s +
           CompilerText::c_strTeacher.arg(Escaped(model.Teacher())) + u"</p>\n</header>\n"_s;
}

QString CPageFrame::Footer() const {
    const CSiteModel& model = m_plan.Model();
    QStringList names = {model.School(), model.Course(), model.Teacher()};
    names.removeAll(QString());
    return u"<footer class=\"site-footer\"><p>"_s + Escaped(names.join(u" · "_s)) + u"</p></footer>\n"_s;
}

QByteArray CPageFrame::Page(const QString& strFolder, const QString& strBodyClass,
                            const FramedContent& content, const QString& strNavigation) const {
    const auto sheet = [&](const QString& strFile) -> QString {
        return u"<link rel=\"stylesheet\" href=\""_s + Escaped(RelativeAddress(strFolder, strFile)) +
               u"\">\n"_s;
    };
    const QString strCourse = m_plan.Model().Course();
    const QString strTitle = content.Title.isEmpty() ? strCourse : content.Title + u" - "_s + strCourse;
    QString strPage = u"<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n"
                      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>"_s;
    strPage += Escaped(strTitle) + u"</title>\n"_s + sheet(FrameParts::c_strParts) + content.Head +
               sheet(HasSkin() ? m_strSkin : FrameParts::c_strPlainSkin) + u"<script defer src=\""_s +
               RelativeAddress(strFolder, FrameParts::c_strScript) +
               u"\"></script>\n</head>\n<body class=\""_s + strBodyClass +
               u"\">\n<a class=\"skip\" href=\"#content\">"_s + CompilerText::c_strSkipLink + u"</a>\n"_s +
               Header(strFolder);
    const QString strMain = u"<main id=\"content\" class=\"content\">\n"_s + content.Main + u"\n</main>\n"_s;
    strPage += strNavigation.isEmpty()
                   ? strMain
                   : u"<div class=\"layout\">\n"_s + strNavigation + strMain + u"</div>\n"_s;
    return (strPage + Footer() + u"</body>\n</html>\n"_s).toUtf8();
}

QByteArray CPageFrame::NodePage(int nNode, const FramedContent& content) const {
    const NodePlan& plan = m_plan.Of(nNode);
    const QString strFolder = FolderOf(plan.PagePath);
    if (plan.OpenType != 0)
        return Page(strFolder, u"vorel-site alone"_s, content, QString());
    return Page(strFolder, u"vorel-site"_s, content, Navigation(nNode, strFolder));
}

QByteArray CPageFrame::StartPage(const FramedContent& content) const {
    return Page(QString(), u"vorel-site start"_s, content, Navigation(-1, QString()));
}
