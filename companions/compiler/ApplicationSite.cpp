#include "companions/compiler/ApplicationSite.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/NodeView.h"
#include "companions/compiler/Sums.h"
#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"

#include <QLocale>
#include <QMap>

using namespace Qt::StringLiterals;

namespace {

const QString c_strStart = u"index.html"_s;
const QString c_strSheet = u"vorel/application.css"_s;
/// Nodes on one page of the table.
constexpr int c_nRowsOnPage = 500;

QByteArray Escaped(const QString& strText) {
    return strText.toHtmlEscaped().toUtf8();
}

QByteArray SizeText(qint64 nBytes) {
    return QLocale(QLocale::Chinese)
        .formattedDataSize(nBytes, 1, QLocale::DataSizeTraditionalFormat)
        .toUtf8();
}

} // namespace

CApplicationSite::CApplicationSite(const CCompileInput& input, const QString& strSite, COutputFolder& output,
                                   CompileProgress& progress)
    : m_input(input), m_model(input.Model()), m_plan(input.Plan()), m_strSite(strSite), m_output(output),
      m_progress(progress) {
    m_sizes.resize(m_model.Nodes().size());
    for (int i = 0; i < m_sizes.size(); ++i)
        m_sizes[i] = SizeOf(i);
}

/// Only for a page that is made: in most runs none is.
void CApplicationSite::Number() {
    if (!m_numbers.isEmpty())
        return;
    const QList<SiteNode>& nodes = m_model.Nodes();
    m_numbers.resize(nodes.size());
    m_below.resize(nodes.size());
    for (int i = 0; i < nodes.size(); ++i) {
        for (int nPlace = 0; nPlace < nodes[i].Children.size(); ++nPlace) {
            const QString strAbove = m_numbers[i].isEmpty() ? QString() : m_numbers[i] + u'.';
            m_numbers[nodes[i].Children[nPlace]] = strAbove + QString::number(nPlace + 1);
        }
    }
    // Each parent stands before its children.
    for (int i = int(nodes.size()) - 1; i > 0; --i)
        m_below[nodes[i].Parent] += m_below[i] + 1;
}

int CApplicationSite::PageCount() const {
    return int((m_model.Nodes().size() + c_nRowsOnPage - 1) / c_nRowsOnPage);
}

QString CApplicationSite::PageName(int nPage) {
    return u"contents%1.html"_s.arg(nPage + 1);
}

std::pair<int, int> CApplicationSite::NodesOn(int nPage) const {
    return {nPage * c_nRowsOnPage, qMin((nPage + 1) * c_nRowsOnPage, int(m_model.Nodes().size()))};
}

void CApplicationSite::Run() {
    QStringList names = {c_strStart, c_strSheet};
    for (int i = 0; i < PageCount(); ++i)
        names.append(PageName(i));
    m_output.Announce(names);
    m_progress.nTotal += int(names.size());
    m_output.Write(c_strSheet, FrameParts::Content(c_strSheet));
    Write(c_strStart, {0, int(m_model.Nodes().size())}, [this] { return StartPage(); });
    for (int i = 0; i < PageCount(); ++i)
        Write(PageName(i), NodesOn(i), [this, i] { return ContentsPage(i); });
}

void CApplicationSite::Write(const QString& strName, std::pair<int, int> nodes,
                             const std::function<QByteArray()>& make) {
    StopIfCancelled(m_progress);
    CSum sum;
    sum.Add(m_input.Sum());
    for (int i = nodes.first; i < nodes.second; ++i)
        sum.Add(quint64(m_sizes[i]));
    OutputRecord record;
    record.nInput = sum.Value();
    if (!m_output.Keep(strName, record.nInput)) {
        Number();
        m_output.Write(strName, make(), record);
    }
    ++m_progress.nDone;
}

QByteArray CApplicationSite::Frame(const QString& strTitle, const QByteArray& main) const {
    const QByteArray course = Escaped(m_model.Course());
    QByteArray out = "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n"
                     "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
                     Escaped(strTitle) + " - " + course + "</title>\n<link rel=\"stylesheet\" href=\"" +
                     c_strSheet.toUtf8() + "\">\n</head>\n<body class=\"vorel-application\">\n<header>\n";
    if (!m_model.School().isEmpty())
        out += "<p>" + Escaped(m_model.School()) + "</p>\n";
    const auto link = [](const QByteArray& address, const QString& strText) -> QByteArray {
        return "<li><a href=\"" + address + "\">" + Escaped(strText) + "</a></li>\n";
    };
    return out + "<p class=\"course\">" + course + "</p>\n<nav aria-label=\"" +
           Escaped(CompilerText::c_strNavigation) + "\"><ul>\n" +
           link(c_strStart.toUtf8(), CompilerText::c_strHome) +
           link(PageName(0).toUtf8(), CompilerText::c_strContents) +
           link("../" + Escaped(EncodeAddress(m_strSite)) + "/index.html", CompilerText::c_strEnterSite) +
           "</ul></nav>\n</header>\n<main>\n<h1>" + Escaped(strTitle) + "</h1>\n" + main +
           "</main>\n<footer><p>" +
           CompilerText::c_strTeacher.arg(m_model.Teacher().toHtmlEscaped()).toUtf8() +
           "</p></footer>\n</body>\n</html>\n";
}

QByteArray CApplicationSite::StartPage() const {
    const QByteArray enter = "<p><a class=\"enter\" href=\"../" + Escaped(EncodeAddress(m_strSite)) +
                             "/index.html\">" + Escaped(CompilerText::c_strEnterSite) + "</a></p>\n";
    return Frame(CompilerText::c_strApplication, enter + FigureTable() + ChapterList());
}

QByteArray CApplicationSite::FigureTable() const {
    QMap<QString, int> kinds;
    int nContents = 0;
    qint64 nSize = 0;
    for (int i = 1; i < m_model.Nodes().size(); ++i) {
        const ENodeView view = m_plan.Of(i).View;
        if (view == ENodeView::List || view == ENodeView::Empty || view == ENodeView::Missing)
            continue;
        ++nContents;
        nSize += m_sizes[i];
        ++kinds[CNodeView::KindWord(m_model.Nodes()[i])];
    }
    const auto row = [](const QString& strName, const QByteArray& value) -> QByteArray {
        return "<tr><th scope=\"row\">" + Escaped(strName) + "</th><td>" + value + "</td></tr>\n";
    };
    QByteArray out = "<h2>" + Escaped(CompilerText::c_strFigures) + "</h2>\n<table class=\"figures\">\n" +
                     row(CompilerText::c_strTeacherName, Escaped(m_model.Teacher())) +
                     row(CompilerText::c_strNodeCount, QByteArray::number(m_below[0])) +
                     row(CompilerText::c_strContentCount, QByteArray::number(nContents));
    for (auto it = kinds.constBegin(); it != kinds.constEnd(); ++it)
        out += row(it.key(), QByteArray::number(it.value()));
    return out + row(CompilerText::c_strTotalSize, SizeText(nSize)) + "</table>\n";
}

QByteArray CApplicationSite::ChapterList() const {
    QByteArray out = "<h2>" + Escaped(CompilerText::c_strChapters) + "</h2>\n<ol class=\"chapters\">\n";
    for (const int nNode : m_model.Nodes()[0].Children) {
        out += "<li>" + LinkTo(nNode);
        if (m_below[nNode] > 0)
            out += " <span>" + CompilerText::c_strChapterCount.arg(m_below[nNode]).toUtf8() + "</span>";
        out += "</li>\n";
    }
    return out + "</ol>\n";
}

/// With its pictures, and all files of an imported site. A link holds nothing of its own.
qint64 CApplicationSite::SizeOf(int nNode) const {
    const NodePlan& plan = m_plan.Of(nNode);
    const SiteNode& node = m_model.Nodes()[nNode];
    if (plan.Source.isEmpty() || plan.View == ENodeView::Address || node.Row.Type == NodeType::c_nInSiteLink)
        return 0;
    const QString& strFolder = m_plan.NodeFolder(nNode);
    if (plan.Source == strFolder || plan.Source.startsWith(QString(strFolder + u'/')))
        return m_input.Tree().SizeBelow(strFolder);
    return m_input.Tree().StateOf(plan.Source).nSize;
}

QByteArray CApplicationSite::LinkTo(int nNode) const {
    const NodePlan& plan = m_plan.Of(nNode);
    QString strAddress = plan.Target;
    if (!plan.TargetIsAddress)
        strAddress = u"../"_s + EncodeAddress(m_strSite + u'/' + plan.Target) +
                     (plan.PagePath.isEmpty() ? plan.Fragment : QString());
    return "<a href=\"" + Escaped(strAddress) + "\">" + Escaped(m_model.Nodes()[nNode].Row.Title) + "</a>";
}

QByteArray CApplicationSite::Row(int nNode) const {
    const SiteNode& node = m_model.Nodes()[nNode];
    const qint64 nSize = m_sizes[nNode];
    return "<tr id=\"n" + QByteArray::number(node.Row.Id) + "\"><td>" + m_numbers[nNode].toUtf8() +
           "</td><th scope=\"row\" class=\"d" + QByteArray::number(qBound(1, node.Depth, 6)) + "\">" +
           LinkTo(nNode) + "</th><td>" + Escaped(CNodeView::KindWord(node)) + "</td><td>" +
           (nSize > 0 ? SizeText(nSize) : QByteArray()) + "</td></tr>\n";
}

QByteArray CApplicationSite::Pager(int nPage) const {
    if (PageCount() < 2)
        return {};
    const auto link = [](int nTo, const QString& strText) -> QByteArray {
        return "<a href=\"" + PageName(nTo).toUtf8() + "\">" + Escaped(strText) + "</a>\n";
    };
    return "<nav class=\"pager\" aria-label=\"" + Escaped(CompilerText::c_strContents) + "\">\n" +
           (nPage > 0 ? link(nPage - 1, CompilerText::c_strBefore) : QByteArray()) +
           (nPage + 1 < PageCount() ? link(nPage + 1, CompilerText::c_strBehind) : QByteArray()) + "</nav>\n";
}

QByteArray CApplicationSite::ContentsPage(int nPage) const {
    QByteArray out = "<table class=\"contents\">\n<thead><tr>";
    for (const QString& strHead : {CompilerText::c_strNumber, CompilerText::c_strName,
                                   CompilerText::c_strKind, CompilerText::c_strSize})
        out += "<th scope=\"col\">" + Escaped(strHead) + "</th>";
    out += "</tr></thead>\n<tbody>\n";
    const auto [nFirst, nEnd] = NodesOn(nPage);
    for (int i = qMax(1, nFirst); i < nEnd; ++i)
        out += Row(i);
    out += "</tbody>\n</table>\n" + Pager(nPage);
    const QString strTitle = PageCount() < 2
                                 ? CompilerText::c_strContents
                                 : CompilerText::c_strContentsPage.arg(nPage + 1).arg(PageCount());
    return Frame(strTitle, out);
}
