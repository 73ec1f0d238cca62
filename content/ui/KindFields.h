#pragma once

#include "content/ContentKinds.h"
#include "platform/base/People.h"

#include <QHash>
#include <QWidget>

#include <functional>
#include <optional>

class CPathField;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// Lets the person choose a place inside the course, over a window; nothing when cancelled.
using AskLink = std::function<std::optional<QString>(QWidget* pParent, const QString& strPresent)>;

/// What the person fills in for one kind of content.
class CKindFields : public QWidget {
    Q_OBJECT
public:
    /// Puts what is entered into the kind's own parameters.
    virtual void Read(CNodeFileParams&) const {}
    /// ImportFilter is typed, not chosen.
    virtual bool IsFilterTyped() const { return false; }

    /// Null where there is nothing to fill in.
    QWidget* GetFirstField() const { return m_pFirst; }
    /// The field that a refusal is about; null when it is none of these.
    QLineEdit* GetField(ContentKinds::EField field) const { return m_fields.value(field); }

protected:
    explicit CKindFields(QWidget* pParent);

    CPathField* NewPath(const char* pszName, const QString& strLabel, ContentKinds::EField field);
    QPushButton* NewButton(const char* pszName, const QString& strText, std::function<void()> onClick);
    /// The next row: words over the whole width.
    void AddWords(const QString& strText, QWidget* pBuddy = nullptr);
    /// The next row: a field, with its label before it and a button behind it, where there are such.
    QLabel* AddRow(const QString& strLabel, QWidget* pField, QPushButton* pButton = nullptr);
    void SetFirst(QWidget* pField) { m_pFirst = pField; }
    void SetField(ContentKinds::EField field, QLineEdit* pField) { m_fields.insert(field, pField); }

private:
    QGridLayout* m_pGrid;
    QHash<ContentKinds::EField, QLineEdit*> m_fields;
    QWidget* m_pFirst = nullptr;
    /// The end of the order of the Tab key, which is that of the rows.
    QWidget* m_pLast = nullptr;
};

/// The fields of a kind, owned by the parent. The people must outlive them.
CKindFields* MakeKindFields(EContentKind kind, Torvane::Dialog::MFC::IPeople& people, const AskLink& askLink,
                            QWidget* pParent);
