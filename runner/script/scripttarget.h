#pragma once

#include "driving/locator.h"
#include "scriptobject.h"

#include <QVariantMap>

namespace Vorkel::Runner {

/// A locator, as scripts see it. The operations are those of the driving library by the same names; options
/// are the objects that docs/scripting.md describes.
class ScriptTarget : public ScriptObject
{
    Q_OBJECT
    Q_PROPERTY(bool isTarget READ isTarget CONSTANT)
    Q_PROPERTY(QString text READ text CONSTANT)

public:
    explicit ScriptTarget(const Locator &locator)
        : m_locator(locator)
    {
    }

    [[nodiscard]] bool isTarget() const { return true; }
    [[nodiscard]] QString text() const { return m_locator.text(); }
    /// Puts the `ObjectHandle` of the object, once it is there.
    Failure handle(QVariant *handle) const;

    Q_INVOKABLE QJSValue below(const QString &name) const;
    Q_INVOKABLE QJSValue itemNamed(const QString &text) const;
    Q_INVOKABLE QJSValue itemAt(int row, int column) const;
    /// A name of the object, for use in other names.
    Q_INVOKABLE QString name() const;

    Q_INVOKABLE void click(const QVariantMap &options) const;
    Q_INVOKABLE void doubleClick(const QVariantMap &options) const;
    Q_INVOKABLE void tap(const QVariantMap &options) const;
    Q_INVOKABLE void hover(const QVariantMap &options) const;
    Q_INVOKABLE void wheel(int notches) const;
    Q_INVOKABLE void dragTo(QObject *other, const QVariantMap &options) const;
    Q_INVOKABLE void type(const QString &text) const;
    Q_INVOKABLE void press(const QString &keys) const;
    Q_INVOKABLE void fill(const QString &text) const;
    Q_INVOKABLE void select(const QString &text) const;
    Q_INVOKABLE void setChecked(bool checked) const;
    Q_INVOKABLE void menu(const QStringList &path) const;

    Q_INVOKABLE QJSValue get(const QString &property) const;
    Q_INVOKABLE void set(const QString &property, const QVariant &value) const;
    Q_INVOKABLE QJSValue call(const QString &method, const QVariantList &arguments) const;
    Q_INVOKABLE QJSValue shownText() const;
    Q_INVOKABLE bool exists() const;
    Q_INVOKABLE int count() const;
    Q_INVOKABLE QJSValue bounds() const;
    Q_INVOKABLE void screenshot(const QString &path) const;
    /// `kind` is the name of a matcher without "to".
    Q_INVOKABLE void expect(const QString &kind, bool isNegated, const QVariant &expected,
                            const QString &property, int limitMs) const;

private:
    template <typename Work>
    bool withObject(const QString &what, Work work) const;

    Locator m_locator;
};

} // namespace Vorkel::Runner
