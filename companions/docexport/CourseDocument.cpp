#include "companions/docexport/CourseDocument.h"

#include "companions/common/FileFault.h"
#include "course/BookDatabase.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "office/OutputFile.h"
#include "platform/base/FileCalls.h"

#include <QCryptographicHash>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nDeepestLevel = 9;
/// All drawings of a node together are not worth more.
constexpr qint64 c_nNodePicturesMs = 60'000;
/// The converter takes up to half a gigabyte for a megabyte.
constexpr qsizetype c_nPieceBytes = qsizetype{512} * 1024;
/// Some hundred sheets: with ten times as many the program that lays them out takes far longer, and may fail.
constexpr qsizetype c_nLayoutBytes = qsizetype{3} << 20;
const QByteArray c_layoutBegin = "<!-- layout -->\n";
const QByteArray c_pieceBegin = "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"></head><body>\n";
const QByteArray c_pieceEnd = "</body></html>\n";
const QByteArray c_asItStands = "<pre class=\"wordxml\">";

QString BareName(const QString& strName) {
    return strName.mid(strName.lastIndexOf(u'/') + 1);
}

/// What the converter takes over as it stands.
QByteArray AsItStands(const QByteArray& xml) {
    return c_asItStands + QString::fromUtf8(xml).toHtmlEscaped().toUtf8() + "</pre>\n";
}

/// A text on its way into a file.
class CTextOut {
public:
    /// Throws, as the others do, Torvane::CRunException with a message.
    explicit CTextOut(const QString& strPath) : m_file(strPath) { Check(m_file.open(QIODevice::WriteOnly)); }
    void Write(const QByteArray& text) { Check(m_file.write(text) == text.size()); }
    void Close() {
        Check(m_file.flush());
        m_file.close();
    }

private:
    void Check(bool bDone) const {
        if (!bDone)
            throw Torvane::CRunException(
                DocText::c_strCannotWrite.arg(m_file.fileName(), FileFaultText(m_file)));
    }

    QFile m_file;
};

/// Two slides share a sheet.
int SlideWidth(const ReadyPicture& picture) {
    constexpr int c_nHeight = 370;
    return qBound(1, c_nHeight * picture.Width / picture.Height, c_nPaperWidth);
}

QString SizeText(qint64 nBytes) {
    if (nBytes < 1024)
        return DocText::c_strBytes.arg(nBytes);
    return QLocale::c().formattedDataSize(nBytes, 1, QLocale::DataSizeTraditionalFormat).toUpper();
}

} // namespace

CCourseDocument::CCourseDocument(const CSitePlan& plan, DocProgress& progress,
                                 const PictureTaker& takePicture)
    : m_plan(plan), m_nodes(plan.Model().Nodes()), m_progress(progress), m_takePicture(takePicture),
      m_links(plan) {}

bool CCourseDocument::HasHeading(int nNode) const {
    // The root is the course itself, which has its title page, unless it shows something of its own.
    const ENodeView view = m_plan.Of(nNode).View;
    return nNode > 0 || (view != ENodeView::List && view != ENodeView::Empty);
}

/// A line or two, and nothing below.
bool CCourseDocument::IsShort(int nNode) const {
    const SiteNode& node = m_nodes[nNode];
    if (!node.Children.isEmpty())
        return false;
    switch (m_plan.Of(nNode).View) {
    case ENodeView::Page:
    case ENodeView::Picture:
        return node.Row.Type == NodeType::c_nInSiteLink;
    case ENodeView::Embedded:
        return node.Row.Type != NodeType::c_nExternalFile;
    default:
        return true;
    }
}

void CCourseDocument::FindHeadings() {
    bool bShortBefore = false;
    for (int i = 0; i < m_nodes.size(); ++i) {
        if (!HasHeading(i))
            continue;
        const int nLevel = qMax(1, m_nodes[i].Depth);
        m_nDeep += nLevel > c_nDeepestLevel;
        m_headings.append(
            {m_nodes[i].Row.Title, qMin(nLevel, c_nDeepestLevel), CDocLinks::BookmarkOf(m_nodes[i].Row.Id)});
        if (nLevel > 1)
            continue;
        // A sheet for each line would be wasted.
        const bool bShort = IsShort(i);
        if (bShort && bShortBefore)
            m_headings.last().Sheet = WordXml::Heading::ESheet::Shared;
        bShortBefore = bShort;
    }
}

QByteArray CCourseDocument::Front() const {
    const CSiteModel& model = m_plan.Model();
    QByteArray cover;
    if (!model.School().isEmpty())
        cover += WordXml::Paragraph("CoverSchool", model.School());
    cover += WordXml::Paragraph("Title", model.Course()) +
             WordXml::Paragraph("CoverLine", DocText::c_strTeacher.arg(model.Teacher())) +
             WordXml::Paragraph("CoverLine", QDate::currentDate().toString(DocText::c_strDate));
    return AsItStands(cover) + AsItStands(WordXml::Contents(DocText::c_strContents, m_headings));
}

/// Where there are this many bytes since the last one began. Where no sheet begins of itself one is made to.
bool CCourseDocument::BeginsLayout(int nNode, qsizetype nBytes) {
    using ESheet = WordXml::Heading::ESheet;
    if (nBytes < c_nLayoutBytes / 2 || !HasHeading(nNode))
        return false;
    WordXml::Heading& heading = m_headings[m_nHeading + 1];
    if (heading.Level == 1 && heading.Sheet == ESheet::ByLevel)
        return true;
    if (nBytes < c_nLayoutBytes)
        return false;
    heading.Sheet = ESheet::Own;
    return true;
}

void CCourseDocument::WriteMarked(const QString& strPath) {
    CTextOut marked(strPath);
    qsizetype nBytes = 0;
    for (int i = 0; i < m_nodes.size(); ++i) {
        if (m_progress.bCancelled)
            throw CDocCancelled();
        if (BeginsLayout(i, nBytes)) {
            marked.Write(c_layoutBegin);
            nBytes = 0;
        }
        WriteNode(i);
        nBytes += m_out.size();
        marked.Write(std::exchange(m_out, QByteArray()));
        m_progress.nNodes = i + 1;
    }
    marked.Close();
}

CCourseDocument::Written CCourseDocument::Write(const std::function<QString(int nPiece)>& pathOf) {
    m_progress.nTotal = int(m_nodes.size());
    m_progress.Stage = DocProgress::EStage::ReadingNodes;
    FindHeadings();
    const QString strMarked = pathOf(0) + u".marked"_s;
    WriteMarked(strMarked);
    QFile marked(strMarked);
    if (!marked.open(QIODevice::ReadOnly))
        throw Torvane::CRunException(DocText::c_strCannotRead.arg(strMarked, FileFaultText(marked)));
    Written written{0, {Layout()}};
    qsizetype nHeadings = 0;
    QByteArray piece = c_pieceBegin + Front();
    const auto write = [&] {
        CTextOut out(pathOf(written.Pieces++));
        out.Write(piece + c_pieceEnd);
        out.Close();
        piece = c_pieceBegin;
    };
    // Neither marks nor links hold an end of line, and only nodes begin so.
    while (!marked.atEnd()) {
        if (m_progress.bCancelled)
            throw CDocCancelled();
        const QByteArray line = m_anchors.Finished(marked.readLine());
        const bool bNode = line.startsWith(c_asItStands);
        const bool bLayout = line == c_layoutBegin;
        if (bLayout || (piece.size() > c_nPieceBytes && bNode))
            write();
        if (bLayout)
            written.Layouts.append({written.Pieces, nHeadings});
        else
            piece += line;
        nHeadings += bNode;
    }
    write();
    if (written.Layouts.size() > 1) {
        using WordXml::Heading;
        CTextOut out(pathOf(written.Pieces));
        out.Write(c_pieceBegin +
                  AsItStands(WordXml::HeadingParagraph({u"-"_s, 1, u"end"_s, Heading::ESheet::Own}, -1)) +
                  c_pieceEnd);
        out.Close();
    }
    marked.remove();
    return written;
}

QStringList CCourseDocument::Notes() const {
    QStringList notes;
    QStringList named;
    for (const auto& [nCount, strKind] :
         {std::pair(m_nFiles, DocText::c_strNamedFiles), std::pair(m_nSites, DocText::c_strNamedSites),
          std::pair(m_nVideos, DocText::c_strNamedVideos)}) {
        if (nCount > 0)
            named.append(strKind.arg(nCount));
    }
    if (!named.isEmpty())
        notes.append(DocText::c_strNoteNamedOnly.arg(named.join(u'、')));
    if (m_nDeep > 0)
        notes.append(DocText::c_strNoteDeepLevels.arg(m_nDeep));
    const int nUnreachable = m_plan.Model().UnreachableCount();
    if (nUnreachable > 0)
        notes.append(DocText::c_strNoteUnreachable.arg(nUnreachable));
    return notes + m_plan.Notes() + m_notes;
}

void CCourseDocument::Note(const QString& strNote) {
    if (!m_noted.contains(strNote)) {
        m_noted.insert(strNote);
        m_notes.append(strNote);
    }
}

void CCourseDocument::WriteNode(int nNode) {
    m_strTitle = m_nodes[nNode].Row.Title;
    m_nPictureMs = 0;
    if (!HasHeading(nNode))
        return;
    ++m_nHeading;
    m_out += AsItStands(WordXml::HeadingParagraph(m_headings[m_nHeading], nNode));
    WriteContent(nNode);
}

void CCourseDocument::WriteContent(int nNode) {
    const NodePlan& plan = m_plan.Of(nNode);
    const StoreRow& row = m_nodes[nNode].Row;
    if (row.Type == NodeType::c_nInSiteLink && plan.View != ENodeView::Missing &&
        plan.View != ENodeView::Address)
        return WriteInSiteLink(nNode);
    switch (plan.View) {
    case ENodeView::Page:
        return WritePage(nNode, plan.Source);
    case ENodeView::List:
        return;
    case ENodeView::Empty:
        return WriteHint(DocText::c_strEmptyNode);
    case ENodeView::Embedded:
        return WriteEmbedded(nNode);
    case ENodeView::Picture:
        return WritePicture(nNode);
    case ENodeView::Player:
    case ENodeView::Download:
        return WriteFile(nNode);
    case ENodeView::Video:
        ++m_nVideos;
        return WriteNamed(
            "File Line", DocText::c_strVideo,
            DocText::c_strVideoFiles.arg(BareName(plan.Source),
                                         QString::number(m_plan.Tree().FilesBelow(plan.Source).size())));
    case ENodeView::Address:
        return WriteNamed("File Line", DocText::c_strAddress, plan.Source, plan.Source);
    case ENodeView::Missing:
        return WriteHint(DocText::c_strMissingContent);
    }
}

void CCourseDocument::WritePage(int nNode, const QString& strSource) {
    const QString strFolder = FolderOf(strSource);
    const auto unreadable = [&](const QString& strWhy) {
        Note(DocText::c_strNoteUnreadable.arg(m_strTitle, strWhy));
        WriteHint(DocText::c_strUnreadablePage);
    };
    const QString strNative = m_plan.Tree().NativePath(strSource);
    const auto bytes = Torvane::Office::ReadWhole(strNative);
    if (!bytes)
        return unreadable(QFileInfo(strNative).size() > Torvane::Office::c_nMaxTextBytes
                              ? DocText::c_strTooLarge
                              : Platform::SystemErrorText(EACCES));
    const qint32 nId = m_nodes[nNode].Row.Id;
    const PageSurroundings surroundings{
        [&](const QString& strReference) { return LinkOf(strReference, strFolder); },
        [&](const QString& strReference) { return PictureOf(strReference, strFolder); },
        [&](const QString& strAnchor) { return m_anchors.LinkTo(nId, strAnchor); },
        [&](const QString& strAnchor) { return m_anchors.MarkOf(nId, strAnchor); },
        [&](const QByteArray& drawing) { return TakeBytes(drawing, u".svg"_s, DocText::c_strDrawing); }};
    const auto text = ReadPrintedPage(PageText::Decode(*bytes).Text, surroundings);
    if (!text)
        return unreadable(DocText::c_strTooDeep);
    if (!text->LeftOut.isEmpty())
        Note(DocText::c_strNoteMedium.arg(m_strTitle, QString::number(text->LeftOut.size())));
    for (const QString& strLink : text->DeadLinks)
        Note(DocText::c_strNoteDeadLink.arg(m_strTitle, strLink));
    if (text->HadHint)
        Note(DocText::c_strNoteHint.arg(m_strTitle));
    if (text->Html.isEmpty())
        return WriteHint(DocText::c_strEmptyNode);
    m_colors += text->Colors;
    // Without it the numbers of a list would go on in the next node's.
    m_out += "<div>\n" + text->Html + "</div>\n";
}

QString CCourseDocument::LinkOf(const QString& strReference, const QString& strFolder) {
    using EKind = CDocLinks::Target::EKind;
    const CDocLinks::Target target = m_links.Find(strReference, strFolder);
    if (target.Kind == EKind::Missing)
        Note(DocText::c_strNoteDeadLink.arg(m_strTitle, target.Text));
    else if (target.Kind == EKind::File)
        Note(DocText::c_strNoteLinkedFile.arg(m_strTitle, BareName(target.Text)));
    if (target.IsDeadAnchor)
        Note(DocText::c_strNoteDeadLink.arg(m_strTitle, strReference));
    if (target.Kind == EKind::Node)
        return target.Anchor.isEmpty() ? u'#' + target.Text
                                       : m_anchors.LinkTo(m_nodes[target.Node].Row.Id, target.Anchor);
    return target.Kind == EKind::Outside ? target.Text : QString();
}

std::optional<ReadyPicture> CCourseDocument::PictureOf(const QString& strReference,
                                                       const QString& strFolder) {
    using EKind = CDocLinks::Target::EKind;
    if (strReference.trimmed().startsWith("data:"_L1, Qt::CaseInsensitive))
        return TakeAddress(strReference);
    const CDocLinks::Target target = m_links.Find(strReference, strFolder);
    QString strSource = target.Text;
    if (target.Kind == EKind::Missing)
        Note(DocText::c_strNoteDeadLink.arg(m_strTitle, target.Text));
    else if (target.Kind == EKind::Outside)
        Note(DocText::c_strNoteNetPicture.arg(m_strTitle, target.Text));
    if (target.Kind == EKind::Node) {
        // What leads to a node has a picture where the node is one file of the course, no address and no
        // list.
        const NodePlan& plan = m_plan.Of(target.Node);
        strSource = plan.View == ENodeView::Address ? QString() : m_plan.Tree().FindFile(plan.Source);
        if (strSource.isEmpty())
            Note(DocText::c_strNoteDeadLink.arg(m_strTitle, strReference));
    } else if (target.Kind != EKind::File) {
        return std::nullopt;
    }
    return strSource.isEmpty() ? std::nullopt : Take(strSource);
}

std::optional<ReadyPicture> CCourseDocument::Take(const QString& strSource) {
    return TakeFile(m_plan.Tree().NativePath(strSource), BareName(strSource));
}

std::optional<ReadyPicture> CCourseDocument::TakeFile(const QString& strNativePath, const QString& strName) {
    if (m_progress.bCancelled)
        throw CDocCancelled();
    QElapsedTimer time;
    time.start();
    const auto isInTime = [&] { return m_nPictureMs + time.elapsed() < c_nNodePicturesMs; };
    const TakenPicture taken =
        m_takePicture(strNativePath, [&] { return !m_progress.bCancelled && isInTime(); });
    if (m_progress.bCancelled)
        throw CDocCancelled();
    if (taken.Picture) {
        m_pictures.insert(taken.Picture->Name);
    } else {
        const QString strFault = taken.Fault.isEmpty() ? DocText::c_strNoteBadPicture : taken.Fault;
        Note(strFault.arg(m_strTitle, strName));
    }
    m_nPictureMs += time.elapsed();
    return taken.Picture;
}

/// A picture whose bytes stand in the address itself.
std::optional<ReadyPicture> CCourseDocument::TakeAddress(const QString& strAddress) {
    const qsizetype nComma = strAddress.indexOf(u',');
    QByteArray bytes = QByteArray::fromPercentEncoding(strAddress.mid(nComma + 1).toLatin1());
    const QString strKind = nComma < 0 ? QString() : strAddress.left(nComma).trimmed().toLower();
    if (strKind.endsWith(";base64"_L1))
        bytes = QByteArray::fromBase64(bytes);
    return TakeBytes(bytes, strKind.contains("svg"_L1) ? u".svg"_s : u".png"_s, DocText::c_strPictureInPage);
}

std::optional<ReadyPicture> CCourseDocument::TakeBytes(const QByteArray& bytes, const QString& strEnding,
                                                       const QString& strName) {
    // Under the same path for the same picture, which is then made once, and beside nothing that it could
    // name.
    const QByteArray sum = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    const QString strPath = m_drawings.filePath(QString::fromLatin1(sum) + strEnding);
    // What can't be written can't be read.
    Torvane::Office::WriteBytes(strPath, bytes);
    const auto picture = TakeFile(strPath, strName);
    QFile::remove(strPath);
    return picture;
}

void CCourseDocument::WriteEmbedded(int nNode) {
    const NodePlan& plan = m_plan.Of(nNode);
    const StoreRow& row = m_nodes[nNode].Row;
    if (row.Type != NodeType::c_nExternalFile) {
        ++m_nSites;
        const QString strFolder = FolderOf(plan.Source);
        return WriteNamed(
            "File Line", row.Type == NodeType::c_nCourseware ? DocText::c_strCourseware : DocText::c_strSite,
            DocText::c_strFirstPage.arg(BareName(plan.Source),
                                        QString::number(m_plan.Tree().FilesBelow(strFolder).size())));
    }
    const QString strName = LowerAscii(BareName(plan.Source));
    if (strName.endsWith(".txt"_L1))
        return WriteFile(nNode);
    // The frame of a presentation has no text of its own.
    if ((strName == "torvaneframe.htm"_L1 || strName == "frame.htm"_L1) &&
        WriteSlides(FolderOf(plan.Source), row.Id))
        return;
    WritePage(nNode, plan.Source);
}

bool CCourseDocument::WriteSlides(const QString& strFolder, qint32 nId) {
    static const QRegularExpression slide(u"/slide\\d+\\.(png|jpe?g|gif)$"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    QStringList files = m_plan.Tree().FilesBelow(strFolder).filter(slide);
    files.sort();
    int nSlide = 0;
    for (const QString& strFile : files) {
        const QString strName = DocText::c_strSlide.arg(++nSlide);
        // The viewer takes the slide's page for its anchor.
        const QString strPage = m_plan.Tree().FindFile(QFileInfo(strFile).path() + u'/' +
                                                       QFileInfo(strFile).completeBaseName() + u".htm"_s);
        const QByteArray mark = strPage.isEmpty() ? QByteArray() : m_anchors.MarkOf(nId, BareName(strPage));
        if (const auto picture = Take(strFile))
            m_out += "<div data-custom-style=\"Slide\"><p>" + mark +
                     PictureHtml(*picture, strName, 0, 0, SlideWidth(*picture)) +
                     "</p></div>\n<div data-custom-style=\"Image Caption\"><p>" + MarkupText(strName) +
                     "</p></div>\n";
    }
    return nSlide > 0;
}

void CCourseDocument::WritePicture(int nNode) {
    const auto picture = Take(m_plan.Of(nNode).Source);
    if (!picture)
        return WriteFile(nNode);
    m_out += "<div data-custom-style=\"Centered\"><p>" + PictureHtml(*picture, m_strTitle) + "</p></div>\n";
    if (!m_nodes[nNode].Row.Comment.isEmpty())
        WriteHint(DocText::c_strComment.arg(m_nodes[nNode].Row.Comment));
}

QString CCourseDocument::ShownName(int nNode) const {
    const StoreRow& row = m_nodes[nNode].Row;
    return row.FileName.isEmpty() ? BareName(m_plan.Of(nNode).Source) : row.FileName;
}

void CCourseDocument::WriteFile(int nNode) {
    ++m_nFiles;
    const qint64 nBytes = QFileInfo(m_plan.Tree().NativePath(m_plan.Of(nNode).Source)).size();
    WriteNamed("File Line", DocText::c_strFile,
               DocText::c_strFileSize.arg(ShownName(nNode), SizeText(nBytes)));
    const QString& strComment = m_nodes[nNode].Row.Comment;
    if (!strComment.isEmpty())
        WriteNamed("File Line", QString(), DocText::c_strComment.arg(strComment));
}

void CCourseDocument::WriteInSiteLink(int nNode) {
    const QString& strSource = m_plan.Of(nNode).Source;
    const QString strAnchor = CDocLinks::AnchorOf(m_plan.Of(nNode).Fragment);
    const int nTarget = m_links.NodeOf(strSource);
    if (nTarget < 0)
        return WriteNamed("File Line", DocText::c_strSeeFile, BareName(strSource));
    const StoreRow& row = m_nodes[nTarget].Row;
    WriteNamed("File Line", QString(), DocText::c_strSeeNode.arg(row.Title),
               strAnchor.isEmpty() ? u'#' + CDocLinks::BookmarkOf(row.Id)
                                   : m_anchors.LinkTo(row.Id, strAnchor));
}

void CCourseDocument::WriteNamed(const char* szStyle, const QString& strLabel, const QString& strText,
                                 const QString& strLink) {
    QByteArray text = MarkupText(strText);
    if (!strLink.isEmpty())
        text = "<a href=\"" + MarkupText(strLink) + "\">" + text + "</a>";
    if (!strLabel.isEmpty())
        text.prepend("<strong>" + MarkupText(strLabel) + "</strong>");
    m_out += "<div data-custom-style=\"" + QByteArray(szStyle) + "\"><p>" + text + "</p></div>\n";
}

void CCourseDocument::WriteHint(const QString& strText) {
    m_out += "<div data-custom-style=\"Hint\"><p>" + MarkupText(strText) + "</p></div>\n";
}
