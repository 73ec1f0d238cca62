#pragma once

#include "server/TemplateDownload.h"

#include <QDialog>

class QLabel;
class QListWidget;

/// The dialog "模板下载": the server's templates with their pictures.
class CTemplateDownloadDialog : public QDialog {
    Q_OBJECT
public:
    /// The list has been fetched.
    CTemplateDownloadDialog(CTemplateDownload& download, QWidget* pParent);

    QString GetChosen() const { return m_strChosen; }

protected:
    /// The first preview is fetched when the dialog stands there.
    void showEvent(QShowEvent* pEvent) override;

private:
    /// The selected entry; nothing when there is none.
    std::optional<QString> GetSelected() const;
    void ShowPreview();
    void OnOk();

    CTemplateDownload& m_download;
    bool m_bShown = false;
    QListWidget* m_pList;
    QLabel* m_pPicture;
    QString m_strChosen;
};

/// The whole command: list, choice, question, companion. True when the companion has run.
bool DownloadTemplate(Torvane::Dialog::MFC::IPeople& people, QWidget* pParent);
