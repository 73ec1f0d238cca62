#include "companions/compiler/SiteRun.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/SourceFile.h"
#include "companions/compiler/Sums.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/Workers.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

const QString c_strStartPage = QString::fromLatin1(CNavigation::c_szStartPage);
const QString c_strSiteMap = QString::fromLatin1(CNavigation::c_szSiteMap);

/// Whether a file's references are corrected on its way.
std::optional<ESourceText> TextKind(const QString& strName) {
    if (IsPageFile(strName))
        return LowerAscii(strName).contains(".xht"_L1) ? ESourceText::XmlPage : ESourceText::Page;
    if (LowerAscii(strName).endsWith(".css"_L1))
        return ESourceText::StyleSheet;
    return std::nullopt;
}

/// Between the parts of what there is to say of a page's dead references: its file, how many, and the first.
constexpr QChar c_cDead = u'\x1';
constexpr int c_nDeadParts = 3;

bool IsPlainText(const QString& strName) {
    return LowerAscii(strName).endsWith(".txt"_L1);
}

} // namespace

CSiteRun::Writers::Writers(const CSitePlan& plan, ESiteForm form)
    : Frame(plan, form == ESiteForm::Html), View(plan, Frame) {}

const CSiteRun::Writers& CSiteRun::TheWriters() const {
    std::call_once(m_once, [this] { m_pWriters = std::make_unique<Writers>(m_plan, m_form); });
    return *m_pWriters;
}

CSiteRun::CSiteRun(const CCompileInput& input, ESiteForm form, CompileProgress& progress)
    : m_input(input), m_plan(input.Plan()), m_tree(input.Tree()), m_form(form), m_progress(progress) {
    if (form == ESiteForm::Classroom)
        m_pClassroom = std::make_unique<CClassroom>(m_plan);
    for (int i = 0; i < NodeCount() && form != ESiteForm::Html; ++i) {
        if (m_plan.Of(i).View == ENodeView::Video)
            m_slides.insert(LectureSlides(m_tree, m_plan.Of(i).Source));
    }
}

QStringList CSiteRun::Parts() const {
    QStringList parts;
    if (!m_slides.isEmpty())
        parts += {FrameParts::c_strLectureScript, FrameParts::c_strSlidesScript};
    if (m_pClassroom)
        return parts + CClassroom::Parts();
    parts.append(FrameParts::c_strParts);
    if (m_form == ESiteForm::Site)
        parts += {FrameParts::c_strScript, FrameParts::c_strSearchScript};
    if (!CPageFrame::HasSkin(m_plan))
        parts.append(FrameParts::c_strPlainSkin);
    return parts;
}

QStringList CSiteRun::StandingPages() const {
    if (m_pClassroom)
        return CClassroom::StandingFiles();
    QStringList pages = {c_strStartPage, c_strSiteMap};
    if (HasSearch())
        pages.append(FrameParts::c_strSearchPage);
    return pages;
}

void CSiteRun::PlanPieces() {
    using enum Piece::EKind;
    for (const QString& strPart : Parts())
        m_pieces.push_back({Part, strPart});
    for (const QString& strPage : StandingPages())
        m_pieces.push_back({Page, strPage});
    for (const QString& strFile : m_plan.FilesToCopy())
        m_pieces.push_back({File, m_tree.OutputName(strFile), strFile});
    for (int i = 0; i < NodeCount(); i += SearchIndex::c_nNodesInPart)
        m_pieces.push_back({Nodes, {}, {}, i});
    if (!HasSearch())
        return;
    QList<int> cut;
    m_sites = SearchIndex::PagesOfSites(m_plan, cut);
    for (int i = 0; i < m_sites.size(); ++i)
        m_pieces.push_back({Pages, m_sites[i].Name, {}, i});
    for (const int nNode : cut)
        m_ownNotes.append(CompilerText::c_strNoteHugeSite.arg(m_input.Model().Nodes()[nNode].Row.Title));
}

QStringList CSiteRun::NamesOfPieces() {
    QStringList names;
    for (const Piece& piece : m_pieces) {
        m_nPages += piece.Kind == Piece::EKind::Page;
        if (piece.Kind != Piece::EKind::Nodes)
            names.append(piece.Name);
    }
    for (int i = 0; i < NodeCount(); ++i) {
        if (m_plan.Of(i).PagePath.isEmpty())
            continue;
        names.append(m_plan.Of(i).PagePath);
        ++m_nPages;
    }
    if (HasSearch()) {
        names.append(SearchIndex::IndexName());
        for (int i = 0; i < SearchIndex::PartCount(m_plan); ++i)
            names.append(SearchIndex::PartName(i));
    }
    return names;
}

void CSiteRun::Run(COutputFolder& output) {
    m_pOutput = &output;
    PlanPieces();
    m_pOutput->Announce(NamesOfPieces());
    m_notes.resize(m_pieces.size());
    m_progress.nTotal += int(m_pieces.size());
    for (int i = 0; i < NodeCount(); ++i)
        m_progress.nLectures += m_plan.Of(i).View == ENodeView::Video;
    ForEachPiece(int(m_pieces.size()), [this](int n) {
        StopIfCancelled(m_progress);
        Make(m_pieces[std::size_t(n)], m_notes[std::size_t(n)]);
        ++m_progress.nDone;
    });
    if (HasSearch())
        MakeSearchIndex();
}

QStringList CSiteRun::Notes() const {
    QStringList all = m_ownNotes;
    for (const QStringList& notes : m_notes)
        all += notes;
    return WithDeadInOneLine(all);
}

/// An imported site may have as many dead references as pages: all of one node are a line.
QStringList CSiteRun::WithDeadInOneLine(const QStringList& notes) const {
    struct Dead {
        int nCount = 0;
        QString strFile, strFirst;
    };
    QMap<QString, Dead> sites;
    QStringList lines;
    for (const QString& strNote : notes) {
        const QStringList parts = strNote.split(c_cDead);
        if (parts.size() != c_nDeadParts) {
            lines.append(strNote);
            continue;
        }
        Dead& dead = sites[parts[0].section(u'/', 0, 0)];
        if (dead.nCount == 0)
            dead = {0, parts[0], parts[2]};
        dead.nCount += parts[1].toInt();
    }
    for (int i = 0; i < NodeCount() && !sites.isEmpty(); ++i) {
        const StoreRow& row = m_input.Model().Nodes()[i].Row;
        const Dead dead = sites.take(m_plan.NodeFolder(i));
        if (dead.nCount > 0)
            lines.append(CompilerText::c_strNoteDeadInSite.arg(row.Title, QString::number(dead.nCount),
                                                               dead.strFile, dead.strFirst));
    }
    return lines;
}

void CSiteRun::Make(const Piece& piece, QStringList& notes) {
    switch (piece.Kind) {
    case Piece::EKind::Part:
        return m_pOutput->Write(piece.Name, FrameParts::Content(piece.Name));
    case Piece::EKind::Page:
        if (!Keep(piece.Name, {}, notes))
            Write(piece.Name, StandingPage(piece.Name), {});
        return;
    case Piece::EKind::Nodes:
        return MakeNodes(piece.First, notes);
    case Piece::EKind::File:
        return MakeFile(piece, notes);
    case Piece::EKind::Pages: {
        const SearchIndex::SitePages& site = m_sites[piece.First];
        if (!Keep(piece.Name, {site.Sources}, notes))
            Write(piece.Name, SearchIndex::PagesPart(m_plan, site), {site.Sources});
    }
    }
}

bool CSiteRun::Keep(const QString& strName, const CCompileInput::Sources& sources, QStringList& notes) {
    const OutputRecord* pKnown = m_pOutput->Known(strName);
    if (!pKnown || !m_pOutput->Keep(strName, m_input.Sum(sources, pKnown->Sources)))
        return false;
    notes += pKnown->Notes;
    return true;
}

void CSiteRun::Write(const QString& strName, const QByteArray& bytes, const CCompileInput::Sources& sources,
                     OutputRecord record) {
    record.nInput = m_input.Sum(sources, record.Sources);
    m_pOutput->Write(strName, bytes, std::move(record));
}

void CSiteRun::Copy(const QString& strSource, const QString& strName) {
    m_pOutput->Copy(m_tree.NativePath(strSource), strName, m_input.SumOfFiles({strSource}),
                    [this] { return m_progress.bCancelled.load(); });
}

/// A page that belongs to no node.
QByteArray CSiteRun::StandingPage(const QString& strName) const {
    if (m_pClassroom)
        return m_pClassroom->StandingFile(strName);
    if (strName == c_strSiteMap)
        return Frame().SiteMapPage();
    if (strName == FrameParts::c_strSearchPage)
        return Frame().SearchPage();
    return Frame().StartPage({QString(), QString(), View().StartMain()});
}

void CSiteRun::MakeNodes(int nFirst, QStringList& notes) {
    QList<std::optional<QString>> texts;
    for (int i = nFirst; i < qMin(nFirst + SearchIndex::c_nNodesInPart, NodeCount()); ++i) {
        StopIfCancelled(m_progress);
        texts.append(m_plan.Of(i).PagePath.isEmpty() ? std::nullopt : MakeNode(i, notes));
        m_progress.nLecturesDone += m_plan.Of(i).View == ENodeView::Video;
    }
    if (HasSearch())
        MakeSearchPart(nFirst, texts);
}

/// Answers the node's text for the search, where it comes along.
std::optional<QString> CSiteRun::MakeNode(int nNode, QStringList& notes) {
    const NodePlan& plan = m_plan.Of(nNode);
    const CCompileInput::Sources sources{{}, nNode, nNode + 1};
    if (Keep(plan.PagePath, sources, notes))
        return std::nullopt;
    const bool bPage = plan.View == ENodeView::Page;
    OutputRecord record;
    FramedContent content;
    if (bPage)
        content = EditorPage(nNode, record);
    else if (plan.View == ENodeView::Video)
        content.Main = LecturePage(nNode, record);
    else
        content.Main = View().Main(nNode);
    content.Title = m_input.Model().Nodes()[nNode].Row.Title;
    notes += record.Notes;
    Write(plan.PagePath,
          m_pClassroom ? m_pClassroom->SlidePage(nNode, content) : Frame().NodePage(nNode, content), sources,
          std::move(record));
    const qsizetype nBody = bPage ? content.Main.indexOf("<div class=\"page\">"_L1) : -1;
    return nBody < 0 || !HasSearch()
               ? std::nullopt
               : std::optional(SearchIndex::NodeText(m_plan, nNode, content.Main.mid(nBody)));
}

void CSiteRun::MakeSearchPart(int nFirst, const QList<std::optional<QString>>& texts) {
    const int nPart = nFirst / SearchIndex::c_nNodesInPart;
    const CCompileInput::Sources sources{{}, nFirst, qMin(nFirst + SearchIndex::c_nNodesInPart, NodeCount())};
    QStringList none;
    if (Keep(SearchIndex::PartName(nPart), sources, none))
        return;
    QStringList all;
    for (int i = 0; i < texts.size(); ++i)
        all.append(texts[i] ? *texts[i] : SearchIndex::NodeText(m_plan, nFirst + i));
    Write(SearchIndex::PartName(nPart), SearchIndex::Part(m_plan, nPart, all), sources);
}

void CSiteRun::MakeSearchIndex() {
    QStringList parts;
    for (int i = 0; i < SearchIndex::PartCount(m_plan); ++i)
        parts.append(SearchIndex::PartName(i));
    for (const SearchIndex::SitePages& site : m_sites)
        parts.append(site.Name);
    QList<QByteArray> filters;
    CSum sum;
    sum.Add(m_input.Sum());
    for (const QString& strPart : parts) {
        QByteArray begin;
        if (Platform::ReadFileBytes(QFile::encodeName(QString(m_pOutput->Path() + u'/' + strPart)), begin,
                                    SearchIndex::c_nFilterEnd) == 0)
            begin = SearchIndex::FilterOf(begin);
        filters.append(begin);
        sum.Add(QString::fromLatin1(begin));
    }
    if (m_pOutput->Keep(SearchIndex::IndexName(), sum.Value()))
        return;
    OutputRecord record;
    record.nInput = sum.Value();
    m_pOutput->Write(SearchIndex::IndexName(), SearchIndex::Index(m_plan, m_sites, filters), record);
}

QString CSiteRun::LecturePage(int nNode, OutputRecord& record) {
    const Lecture lecture = ReadLecture(m_plan, nNode);
    if (lecture.bScriptsUnreadable)
        record.Notes.append(CompilerText::c_strNoteNoScripts.arg(m_input.Model().Nodes()[nNode].Row.Title));
    return View().LectureMain(nNode, lecture, MakeFilm(nNode, lecture, record));
}

/// Answers the film that browsers play. It takes as long as it takes to watch a part of it, so it is made
/// anew only when the recording has changed.
QString CSiteRun::MakeFilm(int nNode, const Lecture& lecture, OutputRecord& record) {
    const PlayableFilm film = FindPlayable(m_tree, m_plan.Of(nNode).Source, lecture.strFilm);
    if (!film.bMade)
        return film.strName;
    m_pOutput->Announce({film.strName});
    // However new it is: nobody records twice within the step of a disk's clock.
    const CSourceTree::State state = m_tree.StateOf(lecture.strFilm);
    const quint64 nInput = CSum()
                               .Add(lecture.strFilm)
                               .Add(quint64(state.nSize))
                               .Add(quint64(state.nModified))
                               .Add(quint64(state.nChanged))
                               .Value();
    if (!m_pOutput->Keep(film.strName, nInput)) {
        const QString strTitle = m_input.Model().Nodes()[nNode].Row.Title;
        const QString strProgram = FilmProgram();
        const QString strMade = m_pOutput->FreshPath();
        m_progress.BeginFilm(strTitle);
        const EFilmEnd eEnd = strProgram.isEmpty()
                                  ? EFilmEnd::Failed
                                  : MakePlayable(strProgram, m_tree.NativePath(lecture.strFilm), strMade,
                                                 [this] { return !m_progress.bCancelled; });
        m_progress.EndFilm(strTitle);
        StopIfCancelled(m_progress);
        if (eEnd == EFilmEnd::DiskFull)
            m_pOutput->Fail(film.strName, ENOSPC);
        if (eEnd != EFilmEnd::Made) {
            record.Notes.append(
                (strProgram.isEmpty() ? CompilerText::c_strNoteNoFilmProgram : CompilerText::c_strNoteNoFilm)
                    .arg(strTitle));
            // Looked for again in each run: a file that is not there is not as it was written.
            record.Also.append(film.strName);
            return QString();
        }
        m_pOutput->Adopt(strMade, film.strName, nInput);
    }
    record.Also.append(film.strName);
    return film.strName;
}

FramedContent CSiteRun::EditorPage(int nNode, OutputRecord& record) {
    const NodePlan& plan = m_plan.Of(nNode);
    const std::optional<QByteArray> bytes = ReadSourceText(m_tree.NativePath(plan.Source));
    const CReferences::Place place = {FolderOf(plan.Source), FolderOf(plan.PagePath), plan.Source};
    const std::optional<ReadyPage> page = bytes ? ReadPage(*bytes, m_plan.References(), place) : std::nullopt;
    if (!page)
        return RawPage(nNode, bytes, record);
    const QString strTitle = m_input.Model().Nodes()[nNode].Row.Title;
    for (const QString& strDead : page->DeadReferences)
        record.Notes.append(CompilerText::c_strNoteDeadLink.arg(strTitle, strDead));
    for (const QString& strDead : page->DeadPlaces)
        record.Notes.append(CompilerText::c_strNoteDeadPlace.arg(strTitle, strDead));
    if (page->Content.HadHint)
        record.Notes.append(CompilerText::c_strNoteHint.arg(strTitle));
    TakeSources(page->Found, record);
    return {QString(), page->Content.Head, View().PageMain(nNode, page->Content.Body)};
}

/// A page that can't be taken apart goes beside its own, which shows it in a frame.
FramedContent CSiteRun::RawPage(int nNode, const std::optional<QByteArray>& bytes, OutputRecord& record) {
    const NodePlan& plan = m_plan.Of(nNode);
    const QString strFolder = FolderOf(plan.PagePath);
    QString strRaw = QFileInfo(plan.PagePath).fileName();
    do
        strRaw.prepend(u"raw-"_s);
    while (!m_tree.FindFile(strFolder + u'/' + strRaw).isEmpty());
    strRaw.prepend(strFolder + u'/');
    record.Notes.append(CompilerText::c_strNoteRawPage.arg(m_input.Model().Nodes()[nNode].Row.Title));
    record.Also.append(strRaw);
    m_pOutput->Announce({strRaw});
    if (bytes) {
        const CorrectedFile corrected = CorrectedText(ESourceText::Page, *bytes, m_plan.References(),
                                                      {FolderOf(plan.Source), strFolder, plan.Source});
        TakeSources(corrected.Found, record);
        m_pOutput->Write(strRaw, corrected.Bytes);
    } else {
        Copy(plan.Source, strRaw);
    }
    return {QString(), QString(), View().RawPageMain(nNode, strRaw)};
}

void CSiteRun::MakeFile(const Piece& piece, QStringList& notes) {
    const bool bText = TextKind(piece.Source) || (m_form == ESiteForm::Html && IsPlainText(piece.Source));
    if (!bText)
        return Copy(piece.Source, piece.Name);
    if (Keep(piece.Name, {{piece.Source}}, notes))
        return;
    const std::optional<QByteArray> bytes = ReadSourceText(m_tree.NativePath(piece.Source));
    if (!bytes) {
        notes.append(CompilerText::c_strNoteLargeText.arg(piece.Source));
        return Copy(piece.Source, piece.Name);
    }
    OutputRecord record;
    const CorrectedFile file = FileText(piece, *bytes);
    TakeSources(file.Found, record);
    if (!file.DeadReferences.isEmpty())
        record.Notes.append(QStringList{piece.Source, QString::number(file.DeadReferences.size()),
                                        file.DeadReferences.first()}
                                .join(c_cDead));
    notes += record.Notes;
    Write(piece.Name, file.Bytes, {{piece.Source}}, std::move(record));
}

/// What a file refers to, and what of that has to come along with it: files that belong to no node.
void CSiteRun::TakeSources(const FoundSources& found, OutputRecord& record) {
    record.Sources += found.Read;
    QStringList pending = found.Strays;
    while (!pending.isEmpty()) {
        const QString strSource = pending.takeLast();
        const QString strName = m_tree.OutputName(strSource);
        if (record.Also.contains(strName))
            continue;
        if (IsOurName(strName)) {
            record.Notes.append(CompilerText::c_strNoteStray.arg(strName));
            continue;
        }
        const FoundSources more = MakeStray(strSource, strName);
        record.Sources += QStringList{strSource} + more.Read;
        record.Also.append(strName);
        pending += more.Strays;
    }
}

/// Once, however many files refer to it.
FoundSources CSiteRun::MakeStray(const QString& strSource, const QString& strName) {
    const std::scoped_lock lock(m_strayMutex);
    const auto known = m_strays.constFind(strSource);
    if (known != m_strays.constEnd())
        return *known;
    m_pOutput->Announce({strName});
    FoundSources found;
    const bool bText = TextKind(strSource).has_value();
    const std::optional<QByteArray> bytes =
        bText ? ReadSourceText(m_tree.NativePath(strSource)) : std::nullopt;
    if (bytes) {
        const CorrectedFile file = FileText({Piece::EKind::File, strName, strSource}, *bytes);
        found = file.Found;
        m_pOutput->Write(strName, file.Bytes);
    } else {
        Copy(strSource, strName);
    }
    return *m_strays.insert(strSource, found);
}

/// A name that the site gives to a file of its own.
bool CSiteRun::IsOurName(const QString& strName) const {
    return LowerAscii(strName).startsWith(QString(FrameParts::c_strFolder + u'/')) ||
           StandingPages().contains(strName, Qt::CaseInsensitive);
}

CorrectedFile CSiteRun::FileText(const Piece& piece, const QByteArray& bytes) const {
    const std::optional<ESourceText> kind = TextKind(piece.Source);
    if (!kind)
        return {WithSaidCoding(bytes).value_or(bytes), {}};
    const CReferences::Place place = {FolderOf(piece.Source), FolderOf(piece.Name), piece.Source};
    CorrectedFile corrected = CorrectedText(*kind, bytes, m_plan.References(), place);
    if (m_slides.contains(piece.Source))
        corrected.Bytes =
            WithScript(corrected.Bytes, RelativeAddress(FolderOf(piece.Name), FrameParts::c_strSlidesScript));
    return corrected;
}
