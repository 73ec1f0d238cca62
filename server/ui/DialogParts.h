#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

/// What the session's dialogs have in common.

/// A field under a label, with its object name and the label as accessible name.
QLineEdit* AddField(QFormLayout* pLayout, const QString& strLabel, const QString& strName,
                    QLineEdit::EchoMode echo = QLineEdit::Normal);

/// "确定" and "取消", named "ok" and "cancel"; 确定 is the default and calls onOk, 取消 rejects the dialog.
QDialogButtonBox* AddButtons(QDialog* pDialog, const std::function<void()>& onOk);
