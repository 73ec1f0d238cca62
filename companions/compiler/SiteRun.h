#pragma once

#include "companions/compiler/Classroom.h"
#include "companions/compiler/CompileInput.h"
#include "companions/compiler/CompileProgress.h"
#include "companions/compiler/NodeView.h"
#include "companions/compiler/OutputFolder.h"
#include "companions/compiler/PageFrame.h"
#include "companions/compiler/PageReader.h"
#include "companions/compiler/SearchIndex.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// Writes a course into the folder of one of its forms: as a site, as plain HTML, or for the classroom. What
/// was made of the same things in the last run stays; the rest is made by several threads.
class CSiteRun {
public:
    /// All must outlive the object.
    CSiteRun(const CCompileInput& input, ESiteForm form, CompileProgress& progress);

    /// Throws Torvane::CRunException with a message.
    void Run(COutputFolder& output);

    int PageCount() const { return m_nPages; }
    /// What there is to say of single files, in their order.
    QStringList Notes() const;

private:
    /// What one thread makes at a time.
    struct Piece {
        enum class EKind {
            Part,  ///< of the frame
            Page,  ///< of no node
            Nodes, ///< the pages of some nodes, and the part of the search that holds their texts
            File,  ///< of the course
            Pages, ///< what the search knows of some pages of an imported site
        };
        EKind Kind;
        /// Of the file, but for Nodes.
        QString Name;
        QString Source = {};
        /// The first one of Nodes; for Pages which of the sites' parts.
        int First = -1;
    };
    void PlanPieces();
    QStringList NamesOfPieces();
    void Make(const Piece& piece, QStringList& notes);
    void MakeNodes(int nFirst, QStringList& notes);
    std::optional<QString> MakeNode(int nNode, QStringList& notes);
    QByteArray StandingPage(const QString& strName) const;
    QString LecturePage(int nNode, OutputRecord& record);
    QString MakeFilm(int nNode, const Lecture& lecture, OutputRecord& record);
    FramedContent EditorPage(int nNode, OutputRecord& record);
    FramedContent RawPage(int nNode, const std::optional<QByteArray>& bytes, OutputRecord& record);
    void MakeFile(const Piece& piece, QStringList& notes);
    CorrectedFile FileText(const Piece& piece, const QByteArray& bytes) const;
    QStringList WithDeadInOneLine(const QStringList& notes) const;
    void TakeSources(const FoundSources& found, OutputRecord& record);
    FoundSources MakeStray(const QString& strSource, const QString& strName);
    bool IsOurName(const QString& strName) const;
    void MakeSearchPart(int nFirst, const QList<std::optional<QString>>& texts);
    void MakeSearchIndex();
    /// Keeps the file as it is, with what there was to say of it, when it was made of the same.
    bool Keep(const QString& strName, const CCompileInput::Sources& sources, QStringList& notes);
    void Write(const QString& strName, const QByteArray& bytes, const CCompileInput::Sources& sources,
               OutputRecord record = {});
    void Copy(const QString& strSource, const QString& strName);
    int NodeCount() const { return int(m_input.Model().Nodes().size()); }
    bool HasSearch() const { return m_form == ESiteForm::Site; }
    QStringList Parts() const;
    QStringList StandingPages() const;

    const CCompileInput& m_input;
    /// Slide pages of lectures, which hear from the film.
    QSet<QString> m_slides;
    const CSitePlan& m_plan;
    const CSourceTree& m_tree;
    const ESiteForm m_form;
    COutputFolder* m_pOutput = nullptr;
    CompileProgress& m_progress;
    struct Writers {
        Writers(const CSitePlan& plan, ESiteForm form);
        CPageFrame Frame;
        CNodeView View;
    };
    /// Made when the first page is: where nothing has changed none is.
    const CPageFrame& Frame() const { return TheWriters().Frame; }
    const CNodeView& View() const { return TheWriters().View; }
    const Writers& TheWriters() const;
    mutable std::once_flag m_once;
    mutable std::unique_ptr<Writers> m_pWriters;
    /// For the classroom form.
    std::unique_ptr<CClassroom> m_pClassroom;
    std::vector<Piece> m_pieces;
    std::vector<QStringList> m_notes;
    QList<SearchIndex::SitePages> m_sites;
    /// Of no single file.
    QStringList m_ownNotes;
    std::mutex m_strayMutex;
    QHash<QString, FoundSources> m_strays;
    int m_nPages = 0;
};
