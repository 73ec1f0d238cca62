#pragma once

#include "content/NodeFileParams.h"

#include <QList>

#include <optional>

/// What the content wizard offers, advises and refuses, without its windows. Paths are in backslash form.
namespace ContentKinds {

/// A kind as the wizard offers it.
struct Row {
    EContentKind Kind;
    /// With its access key, where it has one.
    QString strCaption;
    /// Empty for those that explain themselves.
    QString strTip;
};
/// All kinds, in the order in which they are offered.
const QList<Row>& Rows();
/// A kind's name: its caption up to the access key.
QString NameOf(EContentKind kind);

/// What the wizard opens with. No kind leaves the choice to the wizard, which gives its advice by the title;
/// a kind that was asked for needs none.
ContentPreset PresetFor(EContentKind kind, const QString& strTitle);
/// The tip at the preset kind: the advice before the kind's own words.
QString PresetTip(const ContentPreset& preset);

/// Which files a folder is imported with. The row of the web pages doesn't take what its text promises, and
/// ends with a pattern that is empty.
struct Filter {
    QString strText;
    /// Nothing for the row whose patterns are typed.
    std::optional<QString> patterns;
};
const QList<Filter>& Filters();
/// Patterns as they may be typed: "*." and at least one more character, between ";".
bool ArePatterns(const QString& strPatterns);

/// Whether a page lies in the folder of its site.
bool IsInSite(const QString& strFolder, const QString& strPage);
/// Whether the folder holds what the courseware program exports: files of its three kinds.
bool IsCourseware(const QString& strFolder);

/// What a refusal is about.
enum class EField {
    None,
    ExternalFile,
    SiteFolder,
    SiteHomePage,
    LinkUrl,
    CoursewareFolder,
    ImportFolder,
    ImportFilter,
    InSiteLink,
};
struct Refusal {
    QString strMessage;
    EField Field = EField::None;
    /// The field is emptied; all others keep what was entered.
    bool bEmptied = false;
};
/// What stands against these parameters; nothing when content can be made of them. bTypedFilter: ImportFilter
/// was typed.
std::optional<Refusal> Check(const CNodeFileParams& params, bool bTypedFilter);

} // namespace ContentKinds
