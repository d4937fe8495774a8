#include "contactform.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

ContactForm::ContactForm(QWidget *parent)
    : QWidget(parent)
    , m_name(new QLineEdit)
    , m_age(new QSpinBox)
    , m_favourite(new QCheckBox(tr("&Favourite")))
    , m_add(new QPushButton(tr("&Add")))
{
    m_name->setObjectName(QStringLiteral("nameEdit"));
    m_age->setObjectName(QStringLiteral("ageSpin"));
    m_age->setRange(0, 150);
    m_add->setEnabled(false);

    auto *layout = new QFormLayout(this);
    layout->addRow(tr("&Name"), m_name);
    layout->addRow(tr("A&ge"), m_age);
    layout->addRow(m_favourite);
    layout->addRow(m_add);

    connect(m_name, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_add->setEnabled(!text.trimmed().isEmpty()); });
    connect(m_name, &QLineEdit::returnPressed, m_add, &QPushButton::click);
    connect(m_add, &QPushButton::clicked, this, &ContactForm::submit);
}

void ContactForm::submit()
{
    emit submitted(m_name->text().trimmed(), m_age->value(), m_favourite->isChecked());
    m_name->clear();
    m_age->setValue(0);
    m_favourite->setChecked(false);
    m_name->setFocus();
}
