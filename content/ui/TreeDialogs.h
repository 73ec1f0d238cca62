#pragma once

#include <QString>

#include <optional>

class QWidget;

/// The dialog "确认删除" over the titles that a deletion takes along; true for OK. Cancel is the default.
bool ConfirmDeletion(const QString& strTitles, QWidget* pParent);

/// The dialog "输入栏目标题": the text typed, or nothing when cancelled.
std::optional<QString> AskTitles(const QString& strPreset, QWidget* pParent);

#include "content/TreeDialogs.h"
class CTreeDialogs : public ITreeDialogs {
public:
    explicit CTreeDialogs(QWidget* p) : m_p(p) {}
    bool ConfirmDeletion(const QString& s) override { return ::ConfirmDeletion(s, m_p); }
    std::optional<QString> AskTitles(const QString& s) override { return ::AskTitles(s, m_p); }
    std::optional<qint32> AskOpenType(qint32) override { return {}; }
    std::optional<QStringList> AskCustomTitles(const QStringList&, bool) override { return {}; }
    QWidget* m_p;
};
