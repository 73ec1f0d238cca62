#pragma once

#include "platform/base/People.h"

#include <QElapsedTimer>

#include <memory>

/// The wait of one request, which the person may give up: in the status window that stands, or in one of its
/// own that comes when the request takes long.
class CServerWait {
public:
    using Status = Torvane::Dialog::MFC::CShowStatusDlg;

    /// strText stands in the window of its own.
    CServerWait(Torvane::Dialog::MFC::IPeople& people, Status* pStatus, const QString& strText = {});
    ~CServerWait();
    Q_DISABLE_COPY(CServerWait)

    /// Keeps the windows painted; false when the person gave up.
    bool Step();

private:
    Torvane::Dialog::MFC::IPeople& m_people;
    std::unique_ptr<Status> m_pOwn;
    Status* m_pStatus;
    QString m_strText;
    QElapsedTimer m_waited;
};
