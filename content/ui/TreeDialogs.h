#pragma once

#include "content/TreeDialogs.h"

class QWidget;

/// The dialogs of the tree's commands as real windows, over the window of a widget that outlives this.
class CTreeDialogs : public ITreeDialogs {
public:
    explicit CTreeDialogs(QWidget* pParent) : m_pParent(pParent) {}

    bool ConfirmDeletion(const QString& strTitles) override;
    std::optional<QString> AskTitles(const QString& strPreset) override;
    std::optional<qint32> AskOpenType(qint32 nPresent) override;
    std::optional<QStringList> AskCustomTitles(const QStringList& titles, bool bIntroduction) override;
    std::optional<CNodeFileParams> AskContent(const ContentPreset& preset, CBookNode& node) override;

private:
    QWidget* Window() const;

    QWidget* m_pParent;
};
