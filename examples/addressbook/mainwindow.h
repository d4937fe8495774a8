#pragma once

#include <QMainWindow>

class QTableWidget;

/// A small address book: a form, the contacts, a menu.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

    [[nodiscard]] int contactCount() const;

private:
    void addContact(const QString &name, int age, bool favourite);
    void removeSelected();
    void about();

    QTableWidget *m_contacts;
};
