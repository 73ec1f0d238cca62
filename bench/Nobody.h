#pragma once

#include "course/Course.h"
#include "platform/base/People.h"

#include <stdexcept>

/// Nobody is there to be asked, and nobody looks.
class CNobody : public Torvane::Dialog::MFC::IPeople {
public:
    Torvane::Dialog::MFC::BoxAnswer Ask(const QString& strText, const QString&,
                                        Torvane::Dialog::MFC::BoxButtons, Torvane::Dialog::MFC::BoxIcon,
                                        Torvane::Dialog::MFC::BoxDefault) override {
        throw std::runtime_error(strText.toStdString());
    }
    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> OpenStatus() override {
        return std::make_unique<CUnseen>();
    }
    Torvane::Dialog::MFC::CShowStatusDlg* GetStatus() override { return nullptr; }
    void KeepPainting() override {}
    std::optional<QString> PickOpenFile(const QString&, const QString&, const QString&) override {
        return {};
    }
    std::optional<QString> PickFolder(const QString&, const QString&) override { return {}; }

private:
    class CUnseen : public Torvane::Dialog::MFC::CShowStatusDlg {
    public:
        void ShowStatus(const QString&) override {}
        void ShowProgress(qint64, qint64) override {}
        void AllowCancel(bool) override {}
        bool KeepWaiting() override { return true; }
    };
};

/// The course is made without being opened at the server.
class CNoSession : public ICourseSession, public ITemplateChooser {
public:
    bool ReportStatus(CCourse&, int, const CourseFigures&, bool) override { return true; }
    std::optional<QString> ChooseTemplate(const QString&) override { return {}; }
};
