#pragma once

#include <QValidator>

class QLineEdit;

/// Lets a field grow to so many bytes of the code page and no further, whether a text is typed, pasted,
/// dropped or committed by an input method: as much of it goes in as fits, by whole characters. A text that
/// is longer already stays, and can be shortened.
class CByteLimit : public QValidator {
    Q_OBJECT
public:
    /// For the text that the field holds now and what a person makes of it; the field owns the limit.
    CByteLimit(QLineEdit* pField, qsizetype nBytes);

    State validate(QString& strInput, int& nCursor) const override;

private:
    qsizetype m_nBytes;
    mutable QString m_strLast;
};
