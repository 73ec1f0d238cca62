#include "companions/compiler/Classroom.h"

#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"
#include "foundation/Text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

const QString c_strStart = u"index.html"_s;
const QString c_strCover = u"cover.html"_s;
const QString c_strCourse = u"vorel/course.js"_s;

QByteArray Escaped(const QString& strText) {
    return strText.toHtmlEscaped().toUtf8();
}

QByteArray Up(const QString& strPage) {
    return QByteArray("../").repeated(strPage.count(u'/'));
}

QByteArray Begin(const QByteArray& title) {
    return "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
           title + "</title>\n";
}

/// As it may stand within a script: nothing in it ends the script, whatever element that stands in.
QByteArray Json(const QJsonArray& array) {
    return QJsonDocument(array).toJson(QJsonDocument::Compact).replace("<", "\\u003c");
}

} // namespace

CClassroom::CClassroom(const CSitePlan& plan) : m_plan(plan) {
    m_stepOfNode.resize(plan.Model().Nodes().size());
    for (int i = 0; i < plan.Model().Nodes().size(); ++i)
        PlanStep(i);
}

void CClassroom::PlanStep(int nNode) {
    const NodePlan& plan = m_plan.Of(nNode);
    // The cover stands for a root that shows nothing of its own.
    if (nNode == 0 && (plan.View == ENodeView::List || plan.View == ENodeView::Empty))
        return;
    const bool bOutside = plan.TargetIsAddress;
    QString strTarget = plan.Target;
    // A page of a person's own gets the whole screen, not a frame on a slide. A text stands on the slide.
    const bool bText = LowerAscii(plan.Source).endsWith(".txt"_L1);
    if (plan.View == ENodeView::Embedded && !bText && !plan.PagePath.isEmpty())
        strTarget = m_plan.Tree().OutputName(plan.Source);
    const QString strAddress = bOutside ? strTarget : RelativeAddress({}, strTarget) + plan.Fragment;
    m_steps.append({nNode, strAddress.toUtf8(), bOutside});
    m_stepOfNode[nNode] = int(m_steps.size());
}

QStringList CClassroom::Parts() {
    return {u"vorel/classroom.css"_s, u"vorel/classroom.js"_s, u"vorel/slide.css"_s, u"vorel/slide.js"_s,
            u"vorel/parts.css"_s};
}

QStringList CClassroom::StandingFiles() {
    return {c_strStart, c_strCover, c_strCourse};
}

QByteArray CClassroom::StandingFile(const QString& strName) const {
    if (strName == c_strCover)
        return CoverPage();
    return strName == c_strCourse ? CourseScript() : StartPage();
}

QByteArray CClassroom::CourseScript() const {
    const QList<SiteNode>& nodes = m_plan.Model().Nodes();
    QByteArray out = "vorelCourse([\n" + Json({m_plan.Model().Course(), 0, c_strCover, 0});
    for (const Step& step : m_steps) {
        const SiteNode& node = nodes[step.Node];
        out += ",\n" + Json({node.Row.Title, qMax(node.Depth, 1), QString::fromUtf8(step.Address),
                             step.IsOutside ? 1 : 0});
    }
    return out + "\n]);\n";
}

QByteArray CClassroom::StartPage() const {
    const QByteArray course = Escaped(m_plan.Model().Course());
    const auto button = [](const char* szId, const QString& strWord, const char* szSign) -> QByteArray {
        return "<button type=\"button\" id=\"" + QByteArray(szId) + "\" title=\"" + Escaped(strWord) +
               "\" aria-label=\"" + Escaped(strWord) + "\">" + szSign + "</button>\n";
    };
    return Begin(course) +
           "<link rel=\"stylesheet\" href=\"vorel/classroom.css\">\n</head>\n<body "
           "class=\"vorel-classroom\">\n"
           "<main><iframe id=\"slide\" name=\"slide\" title=\"" +
           course + "\" src=\"" + c_strCover.toUtf8() +
           "\" allowfullscreen></iframe>\n<p id=\"outside\" hidden><a href=\"cover.html\" target=\"_blank\" "
           "rel=\"noopener\"></a></p>"
           "</main>\n<div id=\"bar\" role=\"toolbar\" aria-label=\"" +
           Escaped(CompilerText::c_strSteps) + "\">\n" + button("first", CompilerText::c_strFirst, "|◀") +
           button("before", CompilerText::c_strBefore, "◀") +
           "<output id=\"place\" aria-live=\"polite\"></output>\n" +
           button("behind", CompilerText::c_strBehind, "▶") + button("last", CompilerText::c_strLast, "▶|") +
           "<span id=\"title\"></span>\n" + button("list", CompilerText::c_strOverview, "目录") +
           button("full", CompilerText::c_strFullScreen, "全屏") +
           button("help", CompilerText::c_strKeys, "?") +
           "</div>\n<div id=\"overview\" role=\"dialog\" aria-modal=\"true\" aria-label=\"" +
           Escaped(CompilerText::c_strOverview) +
           "\" hidden>\n<input type=\"search\" id=\"filter\" "
           "aria-label=\"" +
           Escaped(CompilerText::c_strFilter) + "\" placeholder=\"" + Escaped(CompilerText::c_strFilter) +
           "\">\n<ol id=\"nodes\"></ol>\n</div>\n<div id=\"keys\" role=\"dialog\" aria-modal=\"true\" "
           "aria-label=\"" +
           Escaped(CompilerText::c_strKeys) + "\" tabindex=\"-1\" hidden><pre>" +
           Escaped(CompilerText::c_strKeyList) + "</pre></div>\n<noscript><p><a href=\"" +
           c_strCover.toUtf8() + "\">" + Escaped(CompilerText::c_strWithoutScripts) +
           "</a></p></noscript>\n<script src=\"vorel/classroom.js\"></script>\n"
           "<script src=\"vorel/course.js\"></script>\n</body>\n</html>\n";
}

void CClassroom::AppendNeighbour(QByteArray& out, int nStep, const QByteArray& up, const char* szClass,
                                 const QString& strWord) const {
    if (nStep < 0 || nStep > m_steps.size())
        return;
    const QByteArray address = nStep == 0 ? c_strCover.toUtf8() : m_steps[nStep - 1].Address;
    const bool bOutside = nStep > 0 && m_steps[nStep - 1].IsOutside;
    out += "<a class=\"" + QByteArray(szClass) + "\" href=\"" + (bOutside ? QByteArray() : up) +
           Escaped(QString::fromUtf8(address)) + "\">" + Escaped(strWord) + "</a>\n";
}

QByteArray CClassroom::Slide(const QByteArray& up, const QByteArray& title, const QByteArray& head,
                             const QByteArray& main, int nStep) const {
    QByteArray out = Begin(title) + "<link rel=\"stylesheet\" href=\"" + up + "vorel/parts.css\">\n" + head +
                     "<link rel=\"stylesheet\" href=\"" + up +
                     "vorel/slide.css\">\n</head>\n"
                     "<body class=\"vorel-slide\" data-step=\"" +
                     QByteArray::number(nStep) + "\">\n<main>\n" + main + "\n</main>\n<nav aria-label=\"" +
                     Escaped(CompilerText::c_strSteps) + "\">\n";
    AppendNeighbour(out, nStep - 1, up, "before", CompilerText::c_strBefore);
    AppendNeighbour(out, nStep + 1, up, "behind", CompilerText::c_strBehind);
    return out + "</nav>\n<script src=\"" + up + "vorel/slide.js\"></script>\n</body>\n</html>\n";
}

QByteArray CClassroom::SlidePage(int nNode, const FramedContent& content) const {
    return Slide(Up(m_plan.Of(nNode).PagePath), Escaped(content.Title), content.Head.toUtf8(),
                 content.Main.toUtf8(), m_stepOfNode[nNode]);
}

QByteArray CClassroom::CoverPage() const {
    const CSiteModel& model = m_plan.Model();
    QByteArray main = "<div class=\"cover\">\n";
    if (!model.School().isEmpty())
        main += "<p>" + Escaped(model.School()) + "</p>\n";
    main += "<h1>" + Escaped(model.Course()) + "</h1>\n<p>" +
            CompilerText::c_strTeacher.arg(model.Teacher().toHtmlEscaped()).toUtf8() + "</p>\n</div>";
    return Slide({}, Escaped(model.Course()), {}, main, 0);
}
