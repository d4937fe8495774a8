#pragma once

#include <QWidget>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Where a new contact is typed in.
class ContactForm : public QWidget
{
    Q_OBJECT

public:
    explicit ContactForm(QWidget *parent = nullptr);

signals:
    void submitted(const QString &name, int age, bool favourite);

private:
    void submit();

    QLineEdit *m_name;
    QSpinBox *m_age;
    QCheckBox *m_favourite;
    QPushButton *m_add;
};
