#pragma once

#include "content/TreeDialogs.h"
#include "platform/base/People.h"

class QWidget;

/// The dialogs of the tree's commands as real windows, over the window of a widget that outlives this. What
/// the wizard refuses the people are told.
class CTreeDialogs : public ITreeDialogs {
public:
    CTreeDialogs(Torvane::Dialog::MFC::IPeople& people, QWidget* pParent)
        : m_people(people), m_pParent(pParent) {}

    bool ConfirmDeletion(const QString& strTitles) override;
    std::optional<QString> AskTitles(const QString& strPreset) override;
    std::optional<qint32> AskOpenType(qint32 nPresent) override;
    std::optional<QStringList> AskCustomTitles(const QStringList& titles, bool bIntroduction) override;
    std::optional<CNodeFileParams> AskContent(const ContentPreset& preset, CBookNode& node) override;

private:
    QWidget* Window() const;

    Torvane::Dialog::MFC::IPeople& m_people;
    QWidget* m_pParent;
};
