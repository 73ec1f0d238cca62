#include "content/ui/KindFields.h"

#include "content/InSiteLink.h"
#include "content/Texts.h"
#include "content/ui/EntryFields.h"
#include "foundation/Paths.h"
#include "platform/ui/DialogParts.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace ContentText;
using namespace DialogParts;
using ContentKinds::EField;
using Torvane::Dialog::MFC::IPeople;

namespace {

constexpr int c_nCommentLines = 4;
constexpr int c_nColumns = 3;

/// Where a picker begins: at what the field holds, if that is there.
QString PlaceOf(const CPathField& field) {
    const QString strPath = field.GetPath();
    for (const QString& strFolder : {strPath, Torvane::File::ParentFolder(strPath)}) {
        if (Torvane::File::IsFolder(strFolder))
            return strFolder;
    }
    return {};
}

void Take(CPathField& field, const std::optional<QString>& picked) {
    if (!picked)
        return;
    field.SetPath(*picked);
    // Enter goes on from here, and does not pick again.
    field.setFocus();
}

void PickFolder(IPeople& people, CPathField& field, const QString& strPrompt) {
    Take(field, people.PickFolder(strPrompt, PlaceOf(field)));
}

/// A kind that needs nothing but to be understood.
class CExplanation : public CKindFields {
public:
    CExplanation(const QString& strText, QWidget* pParent) : CKindFields(pParent) { AddWords(strText); }
};

class CExternalFileFields : public CKindFields {
public:
    CExternalFileFields(IPeople& people, QWidget* pParent)
        : CKindFields(pParent), m_pFile(NewPath("externalFile", c_strFileField, EField::ExternalFile)),
          m_pComment(Named(new QPlainTextEdit(this), "comment", c_strCommentField)) {
        m_pComment->setTabChangesFocus(true);
        m_pComment->setMinimumHeight(c_nCommentLines * m_pComment->fontMetrics().lineSpacing());
        AddWords(c_strFileField, m_pFile);
        AddRow({}, m_pFile, NewButton("browseFile", c_strBrowsePath, [this, &people] {
                   Take(*m_pFile, people.PickOpenFile(NameOf(c_strFileField), PlaceOf(*m_pFile),
                                                      c_strExternalFileFilter));
               }));
        AddWords(c_strCommentField, m_pComment);
        AddRow({}, m_pComment);
    }
    void Read(CNodeFileParams& params) const override {
        params.ExternalFile = m_pFile->GetPath();
        params.Comment = m_pComment->toPlainText().replace(u'\n', QStringLiteral("\r\n"));
    }

private:
    CPathField* m_pFile;
    QPlainTextEdit* m_pComment;
};

class CExternalEditorFields : public CKindFields {
public:
    explicit CExternalEditorFields(QWidget* pParent)
        : CKindFields(pParent), m_pOffice(new QButtonGroup(this)),
          m_pSaveAsHtml(Named(new QCheckBox(c_strSaveAsHtml, this), "saveAsHtml", c_strSaveAsHtml)) {
        AddWords(c_strOfficeWords);
        for (const QString& strText : c_strOfficeKinds) {
            const int nKind = static_cast<int>(m_pOffice->buttons().size());
            auto* pKind = new QRadioButton(strText, this);
            SetNames(pKind, qPrintable(QStringLiteral("office%1").arg(nKind)), strText);
            m_pOffice->addButton(pKind, nKind);
            AddRow({}, pKind);
        }
        AddRow({}, m_pSaveAsHtml);
        SetFirst(m_pOffice->button(0));
    }
    void Read(CNodeFileParams& params) const override {
        params.OfficeKind = static_cast<EOfficeKind>(m_pOffice->checkedId());
        params.SaveAsHtml = m_pSaveAsHtml->isChecked();
    }

private:
    QButtonGroup* m_pOffice;
    QCheckBox* m_pSaveAsHtml;
};

class CSiteFields : public CKindFields {
public:
    CSiteFields(IPeople& people, QWidget* pParent)
        : CKindFields(pParent), m_people(people),
          m_pFolder(NewPath("siteFolder", c_strSiteFolderField, EField::SiteFolder)),
          m_pHomePage(NewPath("homePage", c_strHomePageField, EField::SiteHomePage)) {
        AddWords(c_strSiteWords, m_pFolder);
        AddRow(c_strSiteFolderField, m_pFolder, NewButton("browseSite", c_strBrowsePath, [this] {
                   PickFolder(m_people, *m_pFolder, c_strPickImportFolder);
               }));
        AddRow(c_strHomePageField, m_pHomePage,
               NewButton("browseHomePage", c_strBrowseHomePage, [this] { PickHomePage(); }));
    }
    void Read(CNodeFileParams& params) const override {
        params.SiteFolder = m_pFolder->GetPath();
        params.SiteHomePage = m_pHomePage->GetPath();
    }

private:
    void PickHomePage() {
        const QString strSite = m_pFolder->GetPath();
        if (strSite.isEmpty()) {
            m_people.Notice(c_strSiteFolderFirst);
            return;
        }
        const auto picked = m_people.PickOpenFile(NameOf(c_strHomePageField), strSite, c_strHomePageFilter);
        if (picked && !ContentKinds::IsInSite(strSite, *picked))
            m_people.Notice(c_strPickedOutside);
        else if (picked)
            m_pHomePage->SetPath(*picked);
    }

    IPeople& m_people;
    CPathField* m_pFolder;
    CPathField* m_pHomePage;
};

class CExternalLinkFields : public CKindFields {
public:
    explicit CExternalLinkFields(QWidget* pParent)
        : CKindFields(pParent), m_pUrl(Named(new CUrlField(this), "linkUrl", c_strUrlField)) {
        SetField(EField::LinkUrl, m_pUrl);
        SetFirst(m_pUrl);
        AddWords(c_strUrlField, m_pUrl);
        AddRow({}, m_pUrl);
    }
    void Read(CNodeFileParams& params) const override { params.LinkUrl = TextOf(*m_pUrl).trimmed(); }

private:
    QLineEdit* m_pUrl;
};

class CCoursewareFields : public CKindFields {
public:
    CCoursewareFields(IPeople& people, QWidget* pParent)
        : CKindFields(pParent),
          m_pFolder(NewPath("coursewareFolder", c_strCoursewareField, EField::CoursewareFolder)) {
        AddWords(c_strCoursewareField, m_pFolder);
        AddRow({}, m_pFolder, NewButton("browseCourseware", c_strBrowsePath, [this, &people] {
                   PickFolder(people, *m_pFolder, c_strPickCourseware);
               }));
    }
    void Read(CNodeFileParams& params) const override { params.CoursewareFolder = m_pFolder->GetPath(); }

private:
    CPathField* m_pFolder;
};

class CFolderFields : public CKindFields {
public:
    CFolderFields(IPeople& people, QWidget* pParent)
        : CKindFields(pParent), m_pFolder(NewPath("importFolder", c_strFolderField, EField::ImportFolder)),
          m_pFilters(Named(new QComboBox(this), "filters", c_strFilterField)),
          m_pTyped(Named(new QLineEdit(this), "typedFilter", c_strTypedFilterField)) {
        SetField(EField::ImportFilter, m_pTyped);
        for (const ContentKinds::Filter& filter : ContentKinds::Filters())
            m_pFilters->addItem(filter.strText);
        AddWords(c_strFolderField, m_pFolder);
        AddRow({}, m_pFolder, NewButton("browseImport", c_strBrowsePath, [this, &people] {
                   PickFolder(people, *m_pFolder, c_strPickImportFolder);
               }));
        AddRow(c_strFilterField, m_pFilters);
        m_pTypedLabel = AddRow(c_strTypedFilterField, m_pTyped);
        connect(m_pFilters, &QComboBox::currentIndexChanged, this, [this] { FollowFilter(); });
        FollowFilter();
    }
    bool IsFilterTyped() const override { return !Chosen().patterns; }
    void Read(CNodeFileParams& params) const override {
        params.ImportFolder = m_pFolder->GetPath();
        params.ImportFilter = Chosen().patterns.value_or(TextOf(*m_pTyped).trimmed());
    }

private:
    const ContentKinds::Filter& Chosen() const {
        return ContentKinds::Filters().at(m_pFilters->currentIndex());
    }
    void FollowFilter() {
        m_pTypedLabel->setEnabled(IsFilterTyped());
        m_pTyped->setEnabled(IsFilterTyped());
        if (!IsFilterTyped())
            m_pTyped->clear();
    }

    CPathField* m_pFolder;
    QComboBox* m_pFilters;
    QLineEdit* m_pTyped;
    QLabel* m_pTypedLabel;
};

class CInSiteLinkFields : public CKindFields {
public:
    CInSiteLinkFields(AskLink askLink, QWidget* pParent)
        : CKindFields(pParent), m_askLink(std::move(askLink)),
          m_pLink(Named(new QLineEdit(this), "inSiteLink", c_strInSiteLinkField)) {
        SetField(EField::InSiteLink, m_pLink);
        AddWords(c_strInSiteLinkField, m_pLink);
        QPushButton* pSet = NewButton("setLink", c_strSetLink, [this] {
            if (const std::optional<QString> link = m_askLink(window(), Link())) {
                m_strChosen = *link;
                m_pLink->setText(InSiteLink::ShownPlace(m_strChosen));
                m_pLink->setFocus();
            }
        });
        AddRow({}, m_pLink, pSet);
        SetFirst(pSet);
    }
    void Read(CNodeFileParams& params) const override { params.SiteLinkUrl = Link(); }

private:
    QString Link() const {
        const QString strText = TextOf(*m_pLink).trimmed();
        return strText == InSiteLink::ShownPlace(m_strChosen) ? m_strChosen : InSiteLink::TypedPlace(strText);
    }

    AskLink m_askLink;
    QLineEdit* m_pLink;
    /// A link that shows tells less: a name may hold what ends one.
    QString m_strChosen;
};

} // namespace

CKindFields::CKindFields(QWidget* pParent) : QWidget(pParent), m_pGrid(new QGridLayout(this)) {
    m_pGrid->setContentsMargins(0, 0, 0, 0);
    m_pGrid->setColumnStretch(1, 1);
}

CPathField* CKindFields::NewPath(const char* pszName, const QString& strLabel, EField field) {
    auto* pField = Named(new CPathField(this), pszName, strLabel);
    SetField(field, pField);
    if (m_pFirst == nullptr)
        SetFirst(pField);
    return pField;
}

QPushButton* CKindFields::NewButton(const char* pszName, const QString& strText,
                                    std::function<void()> onClick) {
    auto* pButton = Named(new QPushButton(strText, this), pszName, strText);
    connect(pButton, &QPushButton::clicked, this, std::move(onClick));
    return pButton;
}

void CKindFields::AddWords(const QString& strText, QWidget* pBuddy) {
    auto* pWords = new QLabel(strText, this);
    pWords->setWordWrap(true);
    pWords->setBuddy(pBuddy);
    m_pGrid->addWidget(pWords, m_pGrid->rowCount(), 0, 1, c_nColumns);
}

QLabel* CKindFields::AddRow(const QString& strLabel, QWidget* pField, QPushButton* pButton) {
    const int nRow = m_pGrid->rowCount();
    QLabel* pLabel = strLabel.isEmpty() ? nullptr : LabelFor(strLabel, pField);
    const int nColumn = pLabel == nullptr ? 0 : 1;
    if (pLabel != nullptr)
        m_pGrid->addWidget(pLabel, nRow, 0);
    m_pGrid->addWidget(pField, nRow, nColumn, 1,
                       (pButton == nullptr ? c_nColumns : c_nColumns - 1) - nColumn);
    if (pButton != nullptr) {
        m_pGrid->addWidget(pButton, nRow, c_nColumns - 1);
        // There may be two of its name.
        pButton->setAccessibleDescription(pField->accessibleName());
    }
    for (QWidget* pControl : {pField, static_cast<QWidget*>(pButton)}) {
        if (pControl != nullptr && m_pLast != nullptr)
            setTabOrder(m_pLast, pControl);
        if (pControl != nullptr)
            m_pLast = pControl;
    }
    return pLabel;
}

CKindFields* MakeKindFields(EContentKind kind, IPeople& people, const AskLink& askLink, QWidget* pParent) {
    switch (kind) {
    case EContentKind::EditorPage:
        return new CExplanation(c_strEditorPageWords, pParent);
    case EContentKind::ExternalFile:
        return new CExternalFileFields(people, pParent);
    case EContentKind::ExternalEditor:
        return new CExternalEditorFields(pParent);
    case EContentKind::Site:
        return new CSiteFields(people, pParent);
    case EContentKind::ExternalLink:
        return new CExternalLinkFields(pParent);
    case EContentKind::Courseware:
        return new CCoursewareFields(people, pParent);
    case EContentKind::Video:
        return new CExplanation(c_strVideoWords, pParent);
    case EContentKind::Folder:
        return new CFolderFields(people, pParent);
    case EContentKind::InSiteLink:
        return new CInSiteLinkFields(askLink, pParent);
    case EContentKind::None:
        break;
    }
    return new CExplanation({}, pParent);
}
