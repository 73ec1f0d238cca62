#pragma once

#include <QString>

/// What a node's content is made of: the numbers of the choices in the content wizard. They are not the types
/// that the store keeps.
enum class EContentKind {
    None = -1,
    EditorPage = 0,
    ExternalFile = 1,
    ExternalEditor = 2,
    Site = 3,
    ExternalLink = 4,
    Courseware = 5,
    Video = 6,
    Folder = 7,
    InSiteLink = 8,
};

/// The empty files that the kind ExternalEditor offers.
enum class EOfficeKind { None = -1, Word = 0, PowerPoint = 1, Excel = 2 };

/// The result of the content wizard. Paths are full, in backslash form.
struct CNodeFileParams {
    EContentKind Kind = EContentKind::None;
    /// 0 none, 1 new window, 2 maximised, 3 full screen.
    qint32 OpenType = 0;
    /// Kind ExternalFile.
    QString ExternalFile;
    QString Comment;
    /// Kind ExternalEditor.
    EOfficeKind OfficeKind = EOfficeKind::None;
    bool SaveAsHtml = false;
    /// Kind Site. The home page lies inside the folder.
    QString SiteFolder;
    QString SiteHomePage;
    /// Kind ExternalLink.
    QString LinkUrl;
    /// Kind InSiteLink: a file URL, with a fragment if any, or a text that is stored as it stands.
    QString SiteLinkUrl;
    /// Kind Courseware.
    QString CoursewareFolder;
    /// Kind Folder. Patterns separated by ";".
    QString ImportFolder;
    QString ImportFilter;
};

/// What the wizard opens with.
struct ContentPreset {
    EContentKind Kind = EContentKind::EditorPage;
    /// Shown as a tip at the preset kind, unless empty.
    QString strAdvice;
};
