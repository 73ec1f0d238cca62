#pragma once

#include "companions/docexport/DocExport.h"

#include <QDialog>

#include <thread>

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/// Asks where the document shall go, exports, shows how far it is, and reports in the end.
class CExportWindow : public QDialog {
    Q_OBJECT
public:
    CExportWindow(const QString& strProjectPath, const QString& strCourse, const PictureTakerMaker& pictures);
    /// Stops the export and waits for its end.
    ~CExportWindow() override;

    /// 取消, Escape and the window's own button: while it exports they stop it, else they close the window.
    void reject() override;

private:
    enum class EState { Asking, Exporting, Ended };

    void MakeForm();
    void MakeProgress();
    void Browse();
    void Warn(const QString& strText);
    void Start();
    void ShowProgress();
    void End(const DocOutcome& outcome);
    /// 导出 first, 打开 in the end.
    void Accept();
    DocRequest Request() const;
    bool MayReplace(const QString& strTarget);

    const QString m_strProjectPath;
    const PictureTakerMaker m_pictures;
    DocProgress m_progress;
    std::thread m_worker;
    EState m_eState = EState::Asking;
    bool m_bDone = false;

    QLabel* m_pIcon;
    QLabel* m_pHead;
    QWidget* m_pForm;
    QLineEdit* m_pTarget;
    QProgressBar* m_pBar;
    QLabel* m_pDetails;
    QLabel* m_pReportLabel;
    QPlainTextEdit* m_pReport;
    QDialogButtonBox* m_pButtons;
    QPushButton* m_pStart;
    QPushButton* m_pCancel;
};
