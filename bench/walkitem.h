#pragma once

#include <QObject>
#include <QString>

/// An object with properties of the kinds that programs have.
class WalkItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int width MEMBER m_width)
    Q_PROPERTY(bool visible MEMBER m_visible)
    Q_PROPERTY(double opacity MEMBER m_opacity)
    Q_PROPERTY(QString title MEMBER m_title)
    Q_PROPERTY(qint64 stamp MEMBER m_stamp)

public:
    static constexpr int NumProperties = 5;

    using QObject::QObject;

private:
    int m_width = 640;
    bool m_visible = true;
    double m_opacity = 0.5;
    QString m_title = QStringLiteral("An item among many");
    qint64 m_stamp = 1LL << 40;
};
