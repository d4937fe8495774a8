#include "mainwindow.h"

#include "contactform.h"

#include <QHeaderView>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTableWidget>
#include <QVBoxLayout>

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_contacts(new QTableWidget(0, 3))
{
    setWindowTitle(tr("Address Book"));
    resize(480, 400);

    m_contacts->setObjectName(QStringLiteral("contacts"));
    m_contacts->setHorizontalHeaderLabels({ tr("Name"), tr("Age"), tr("Favourite") });
    m_contacts->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_contacts->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_contacts->setEditTriggers(QAbstractItemView::NoEditTriggers);

    auto *form = new ContactForm;
    connect(form, &ContactForm::submitted, this, &MainWindow::addContact);

    auto *centre = new QWidget;
    auto *layout = new QVBoxLayout(centre);
    layout->addWidget(form);
    layout->addWidget(m_contacts);
    setCentralWidget(centre);

    QMenu *file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Remove contact"), this, &MainWindow::removeSelected);
    file->addAction(tr("&Quit"), this, &QWidget::close);
    menuBar()->addMenu(tr("&Help"))->addAction(tr("&About"), this, &MainWindow::about);

    addContact(QStringLiteral("Ada"), 36, true);
    addContact(QStringLiteral("Grace"), 45, false);
}

int MainWindow::contactCount() const
{
    return m_contacts->rowCount();
}

void MainWindow::addContact(const QString &name, int age, bool favourite)
{
    const int row = m_contacts->rowCount();
    m_contacts->insertRow(row);
    m_contacts->setItem(row, 0, new QTableWidgetItem(name));
    m_contacts->setItem(row, 1, new QTableWidgetItem(QString::number(age)));
    m_contacts->setItem(row, 2, new QTableWidgetItem(favourite ? tr("yes") : tr("no")));
    statusBar()->showMessage(tr("%n contact(s)", nullptr, contactCount()));
}

void MainWindow::removeSelected()
{
    m_contacts->removeRow(m_contacts->currentRow());
    statusBar()->showMessage(tr("%n contact(s)", nullptr, contactCount()));
}

void MainWindow::about()
{
    QMessageBox::about(this, tr("About Address Book"), tr("A small program to be tested."));
}
