#include "companions/compiler/NodeView.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/SourceFile.h"
#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"
#include "foundation/Exceptions.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

/// More text than anybody reads in one page.
constexpr qint64 c_nMaxShownText = qint64{512} << 10;

QString Extension(const QString& strName) {
    return LowerAscii(Torvane::File::Extension(strName));
}

/// Of a file that is no text at all.
bool MayNotStandInAPage(char16_t c) {
    const bool bControl = (c < 0x20 && c != u'\n' && c != u'\t' && c != u'\r') || (c >= 0x7f && c < 0xa0);
    return bControl || (c >= 0xfdd0 && c <= 0xfdef) || c >= 0xfffe || QChar::isSurrogate(c);
}

QString Escaped(const QString& strText) {
    return strText.toHtmlEscaped();
}

QString Paragraph(const QString& strClass, const QString& strText) {
    return u"<p class=\""_s + strClass + u"\">"_s + strText + u"</p>\n"_s;
}

QString BareName(const QString& strName) {
    return strName.mid(strName.lastIndexOf(u'/') + 1);
}

} // namespace

QString CNodeView::KindWord(const SiteNode& node) {
    switch (node.Row.Type) {
    case NodeType::c_nEditorPage:
        return CompilerText::c_strKindPage;
    case NodeType::c_nExternalFile:
        return CompilerText::c_strKindFile;
    case NodeType::c_nSite:
        return CompilerText::c_strKindSite;
    case NodeType::c_nExternalLink:
    case NodeType::c_nInSiteLink:
        return CompilerText::c_strKindLink;
    case NodeType::c_nVideo:
        return CompilerText::c_strKindVideo;
    case NodeType::c_nCourseware:
        return CompilerText::c_strKindCourseware;
    default:
        return node.Children.isEmpty() ? CompilerText::c_strKindEmpty : CompilerText::c_strKindFolder;
    }
}

QString CNodeView::Heading(int nNode) const {
    return u"<h1 class=\"node-title\">"_s + Escaped(m_plan.Model().Nodes()[nNode].Row.Title) + u"</h1>\n"_s;
}

QString CNodeView::ChildList(int nNode, const QString& strFolder) const {
    const QList<SiteNode>& nodes = m_plan.Model().Nodes();
    QString strList = u"<ul class=\"children\">\n"_s;
    for (const int nChild : nodes[nNode].Children) {
        const QString strWindow = m_plan.Of(nChild).OpenType != 0 ? CompilerText::c_strNewWindow : QString();
        strList += u"<li>"_s + m_frame.NodeLink(nChild, strFolder) + u"<span class=\"title\">"_s +
                   Escaped(nodes[nChild].Row.Title) + u"</span><span class=\"kind\">"_s +
                   KindWord(nodes[nChild]) + strWindow + u"</span></a></li>\n"_s;
    }
    return strList + u"</ul>\n"_s;
}

QString CNodeView::FileAddress(int nNode, const QString& strSource) const {
    const NodePlan& plan = m_plan.Of(nNode);
    return RelativeAddress(FolderOf(plan.PagePath), m_plan.Tree().OutputName(strSource));
}

/// strName says what opens; empty for what the node is called.
QString CNodeView::OpenAlone(int nNode, const QString& strAddress, const QString& strName) const {
    const QString strTitle = Escaped(strName.isEmpty() ? m_plan.Model().Nodes()[nNode].Row.Title : strName);
    return Paragraph(u"alone-link"_s, u"<a href=\""_s + Escaped(strAddress) +
                                          u"\" target=\"_blank\" rel=\"noopener\">"_s +
                                          CompilerText::c_strOpenAlone.arg(strTitle) +
                                          FrameParts::HiddenHint(CompilerText::c_strNewWindow) + u"</a>"_s);
}

QString CNodeView::Embed(int nNode, const QString& strAddress) const {
    return u"<iframe class=\"embed\" title=\""_s + Escaped(m_plan.Model().Nodes()[nNode].Row.Title) +
           u"\" src=\""_s + Escaped(strAddress) + u"\"></iframe>\n"_s;
}

QString CNodeView::FileCard(int nNode, const QString& strSource, const QString& strShownName) const {
    const StoreRow& row = m_plan.Model().Nodes()[nNode].Row;
    const qint64 nBytes = QFileInfo(m_plan.Tree().NativePath(strSource)).size();
    const QString strSize =
        QLocale(QLocale::Chinese).formattedDataSize(nBytes, 1, QLocale::DataSizeTraditionalFormat);
    const auto line = [](const QString& strName, const QString& strValue) -> QString {
        return u"<dt>"_s + strName + u"</dt><dd>"_s + Escaped(strValue) + u"</dd>\n"_s;
    };
    QString strCard = u"<div class=\"file-card\">\n<dl>\n"_s + line(CompilerText::c_strFile, strShownName) +
                      line(CompilerText::c_strSize, strSize);
    if (!row.Comment.isEmpty())
        strCard += line(CompilerText::c_strComment, row.Comment);
    return strCard + u"</dl>\n<p><a class=\"button\" href=\""_s + Escaped(FileAddress(nNode, strSource)) +
           u"\" download=\""_s + Escaped(strShownName) + u"\">"_s + CompilerText::c_strDownload +
           u"</a></p>\n</div>\n"_s;
}

/// A text file says nothing of its coding, so it stands in the page itself; none for a very large one.
QString CNodeView::PlainTextFile(const QString& strSource) const {
    const QString strPath = m_plan.Tree().NativePath(strSource);
    if (QFileInfo(strPath).size() > c_nMaxShownText)
        return QString();
    try {
        const auto bytes = ReadSourceText(strPath);
        QString strText = PageText::Decode(bytes.value_or(QByteArray())).Text;
        strText.removeIf([](QChar c) { return MayNotStandInAPage(c.unicode()); });
        return u"<pre class=\"text\" tabindex=\"0\">\n"_s + Escaped(strText) + u"</pre>\n"_s;
    } catch (const Torvane::CRunException&) {
        return QString();
    }
}

QString CNodeView::Player(int nNode, const QString& strAddress, const QString& strName) const {
    const QString strExtension = Extension(strName);
    const bool bSound = strExtension == ".mp3"_L1 || strExtension == ".ogg"_L1 || strExtension == ".wav"_L1;
    const QString strTag = bSound ? u"audio"_s : u"video"_s;
    return u"<"_s + strTag + (bSound ? u""_s : u" playsinline"_s) +
           u" class=\"media\" controls preload=\"metadata\" aria-label=\""_s +
           Escaped(m_plan.Model().Nodes()[nNode].Row.Title) + u"\" src=\""_s + Escaped(strAddress) +
           u"\"></"_s + strTag + u">\n"_s;
}

QString CNodeView::FileMain(int nNode) const {
    const StoreRow& row = m_plan.Model().Nodes()[nNode].Row;
    const NodePlan& plan = m_plan.Of(nNode);
    const QString strAddress = FileAddress(nNode, plan.Source);
    const QString strShown = row.FileName.isEmpty() ? BareName(plan.Source) : row.FileName;
    QString strView;
    switch (plan.View) {
    case ENodeView::Embedded:
        strView = Embed(nNode, strAddress + plan.Fragment);
        break;
    case ENodeView::Picture:
        strView = u"<img class=\"media\" src=\""_s + Escaped(strAddress) + u"\" alt=\""_s +
                  Escaped(row.Title) + u"\">\n"_s;
        break;
    case ENodeView::Player:
        strView = Player(nNode, strAddress, plan.Source);
        break;
    default:
        // A browser may show it or not; whoever only wants to read it need not keep it.
        if (Extension(plan.Source) == ".pdf"_L1)
            strView = OpenAlone(nNode, strAddress);
        return strView + FileCard(nNode, plan.Source, strShown);
    }
    if (plan.View == ENodeView::Embedded && Extension(plan.Source) == ".txt"_L1) {
        const QString strText = PlainTextFile(plan.Source);
        return strText + FileCard(nNode, plan.Source, strShown);
    }
    // A file of the teacher's own may be taken home; the pages of a site can't be taken one by one.
    if (row.Type == NodeType::c_nExternalFile)
        strView += FileCard(nNode, plan.Source, strShown);
    return OpenAlone(nNode, strAddress + plan.Fragment) + strView;
}

/// Without scripts an entry opens the film at its place.
QString CNodeView::OutlineList(const Lecture& lecture, const QString& strFilm) const {
    if (lecture.Outline.isEmpty())
        return QString();
    QString strList = u"<h2>"_s + CompilerText::c_strOutline + u"</h2>\n<ol class=\"outline\">\n"_s;
    for (const Lecture::Place& place : lecture.Outline) {
        const QString strName = Escaped(place.strName);
        const QString strTime = QString::number(double(place.nTime) / 1000, 'f', 3);
        if (place.nTime < 0 || strFilm.isEmpty())
            strList += u"<li>"_s + strName + u"</li>\n"_s;
        else
            strList += u"<li><a href=\""_s + Escaped(strFilm) + u"#t="_s + strTime + u"\" data-time=\""_s +
                       QString::number(place.nTime) + u"\">"_s + strName + u"</a></li>\n"_s;
    }
    return strList + u"</ol>\n"_s;
}

QString CNodeView::LectureMain(int nNode, const Lecture& lecture, const QString& strFilm) const {
    const NodePlan& plan = m_plan.Of(nNode);
    const QString strFilmAddress =
        strFilm.isEmpty() ? QString() : RelativeAddress(FolderOf(plan.PagePath), strFilm);
    QString strMain = Heading(nNode) + u"<div class=\"lecture\">\n<div class=\"film\">\n"_s;
    if (!strFilm.isEmpty())
        strMain += Player(nNode, strFilmAddress, strFilm);
    strMain += OutlineList(lecture, strFilmAddress) + u"</div>\n"_s;
    if (!lecture.strSlides.isEmpty()) {
        const QString strTitle =
            CompilerText::c_strSlides.arg(m_plan.Model().Nodes()[nNode].Row.Title).toHtmlEscaped();
        strMain += u"<iframe class=\"embed slides\" title=\""_s + strTitle + u"\" src=\""_s +
                   Escaped(FileAddress(nNode, lecture.strSlides)) + u"\"></iframe>\n"_s;
    }
    strMain += u"</div>\n"_s;
    if (m_frame.HasScripts() && !strFilm.isEmpty()) {
        QJsonArray steps;
        for (const Lecture::Step& step : lecture.Steps)
            steps.append(QJsonArray{step.nTime, step.strScript, step.bSlide ? 1 : 0});
        QString strSteps = QString::fromUtf8(QJsonDocument(steps).toJson(QJsonDocument::Compact));
        strSteps.replace(u'<', u"\\u003c"_s);
        strMain += u"<script type=\"application/json\" id=\"v-lecture\">"_s + strSteps +
                   u"</script>\n<script defer src=\""_s +
                   RelativeAddress(FolderOf(plan.PagePath), FrameParts::c_strLectureScript) +
                   u"\"></script>\n"_s;
    }
    if (!lecture.strSlides.isEmpty())
        strMain += OpenAlone(nNode, FileAddress(nNode, lecture.strSlides), CompilerText::c_strSlidesName);
    if (!lecture.strFilm.isEmpty())
        strMain += FileCard(nNode, lecture.strFilm, BareName(lecture.strFilm));
    return strMain;
}

QString CNodeView::Main(int nNode) const {
    const NodePlan& plan = m_plan.Of(nNode);
    QString strMain = Heading(nNode);
    switch (plan.View) {
    case ENodeView::List:
        return strMain + ChildList(nNode, FolderOf(plan.PagePath));
    case ENodeView::Empty:
        return strMain + Paragraph(u"empty"_s, CompilerText::c_strEmptyNode);
    case ENodeView::Address:
        strMain += Paragraph(u"alone-link"_s,
                             u"<a href=\""_s + Escaped(plan.Source) +
                                 u"\" target=\"_blank\" rel=\"noopener\">"_s + Escaped(plan.Source) +
                                 FrameParts::HiddenHint(CompilerText::c_strNewWindow) + u"</a>"_s);
        if (plan.Source.startsWith("http"_L1, Qt::CaseInsensitive))
            strMain += Paragraph(u"hint"_s, CompilerText::c_strFrameHint) + Embed(nNode, plan.Source);
        return strMain;
    case ENodeView::Missing:
        return strMain + Paragraph(u"empty"_s, CompilerText::c_strMissingContent);
    default:
        return strMain + FileMain(nNode);
    }
}

QString CNodeView::PageMain(int nNode, const QString& strBody) const {
    // It may be wider than the window. Scripts find that out; without them it can be scrolled by keyboard in
    // any case.
    const QString strReach = m_frame.HasScripts() ? QString()
                                                  : u" tabindex=\"0\" role=\"region\" aria-label=\""_s +
                                                        CompilerText::c_strPageText + u'"';
    return Heading(nNode) + u"<div class=\"page\""_s + strReach + u">\n"_s + strBody + u"\n</div>"_s;
}

QString CNodeView::RawPageMain(int nNode, const QString& strFile) const {
    const QString strAddress = RelativeAddress(FolderOf(m_plan.Of(nNode).PagePath), strFile);
    return Heading(nNode) + OpenAlone(nNode, strAddress) + Embed(nNode, strAddress);
}

QString CNodeView::StartMain() const {
    const CSiteModel& model = m_plan.Model();
    QString strHero = u"<section class=\"hero\">\n<h1>"_s + Escaped(model.Course()) + u"</h1>\n"_s;
    if (!model.School().isEmpty())
        strHero += Paragraph(u"school"_s, Escaped(model.School()));
    const bool bRootHasContent =
        m_plan.Of(0).View != ENodeView::List && m_plan.Of(0).View != ENodeView::Empty;
    const QString strTeacher = CompilerText::c_strTeacher.arg(Escaped(model.Teacher()));
    strHero += Paragraph(
        u"teacher"_s, bRootHasContent ? m_frame.NodeLink(0, QString()) + strTeacher + u"</a>"_s : strTeacher);
    return strHero + u"</section>\n"_s +
           (model.Nodes()[0].Children.isEmpty() ? QString() : ChildList(0, QString()));
}
