#include "things.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/imagetransport.h"
#include "hook/platform/screen.h"
#include "objectmodel/globalobject.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTimer>

using namespace Things;

namespace {

/// Six pixels, no two alike.
QImage sixPixels()
{
    QImage image(3, 2, QImage::Format_RGB32);
    for (int i = 0; i < 6; ++i)
        image.setPixel(i % 3, i / 3, qRgb(40 * i, 255 - i, 7));
    return image;
}

const Class *imageClass(const char *name)
{
    return Inspector::self()->type(QLatin1String(name));
}

class PictureListener : public ResponseListener<ArgumentList>
{
public:
    void response(const FunctionCallResult<ArgumentList> &result) override
    {
        pictures << screenshotFromVariant(result.value().value(0)).image;
    }

    QList<QImage> pictures;
};

/// What `grabWidget` gives the next time, and the argument that it was given.
SharedPtr<Object> grabbed;
int grabArgument = 0;

void addGrabWidget(bool withArgument)
{
    Signature signature { Argument(u"object"_s, Inspector::self()->type(thingClass()->className()),
                                   ObjectAttribute::Pointer) };
    if (withArgument)
        signature.append(Argument(u"argument"_s, Inspector::self()->type(IntClassId)));
    const GlobalMethod::ListCaller grab = [](const ObjectList &arguments, const Class *) {
        grabArgument = arguments.size() > 1 ? arguments[1]->toInteger() : 0;
        return grabbed;
    };
    Inspector::self()->globalClass()->addMethod(
            std::make_unique<GlobalMethod>(grab, Argument(thingClass()), u"grabWidget"_s, signature));
}

} // namespace

class tst_images : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        new Class("QImage", true);
        new Class("QPixmap", true);
    }
    void travel();
    void areReadWithCare();
    void stayTrueWhenTurned_data();
    void stayTrueWhenTurned();
    void showObjects();
    void endWithTheApplication_data();
    void endWithTheApplication();
    void showTheDesktop();
    void showAreas();
    void leaveAsPng();
    void comeFromScreens();
};

void tst_images::travel()
{
    QVERIFY(!screenshotToVariant({}).isValid());
    const Screenshot sent { sixPixels(), QTransform(1, 2, 3, 4, 5, 6), 1.5 };
    const QVariant value = screenshotToVariant(sent);
    const Screenshot read = screenshotFromVariant(value);
    QCOMPARE(read.image, sent.image);
    QCOMPARE(read.transform, sent.transform);
    QCOMPARE(read.density, 1.5);
    QVariantMap older { { u"image"_s, value.toMap().value(u"image"_s) } };
    QCOMPARE(screenshotFromOlderVariant(older).transform, QTransform());
    QCOMPARE(screenshotFromOlderVariant(older).density, 1.0);
    older.insert({ { u"origin"_s, QPoint(10, 20) }, { u"scale"_s, 2.0 } });
    const Screenshot old = screenshotFromOlderVariant(older);
    QCOMPARE(old.image, sent.image);
    QCOMPARE(old.transform, QTransform(0.5, 0, 0, 0.5, 5, 10));
}

void tst_images::areReadWithCare()
{
    const QByteArray good =
            screenshotToVariant({ sixPixels(), {}, 1.0 }).toMap().value(u"image"_s).toByteArray();
    for (const QByteArray &image :
         { QByteArray(), good.left(3), good.chopped(9), qCompress("BM and no more", 1) })
    {
        const QVariantMap value { { u"image"_s, image }, { u"transform"_s, QVariantList { 1.0, 2.0 } } };
        for (const Screenshot &read : { screenshotFromVariant(value), screenshotFromOlderVariant(value) }) {
            QVERIFY2(read.image.isNull(), image.toHex().constData());
            QCOMPARE(read.transform, QTransform());
            QCOMPARE(read.density, 1.0);
        }
    }
    QVERIFY(screenshotFromVariant(7).image.isNull());
}

void tst_images::stayTrueWhenTurned_data()
{
    QTest::addColumn<Screenshot>("turned");
    const Screenshot screenshot { sixPixels(), QTransform(2, 0, 0, 2, 100, -50), 1.0 };
    for (const int way : { 0, 1, 2, 3, 4, -1 })
        QTest::addRow("way %d", way) << screenshot.rotated(way);
    QTest::newRow("no part") << screenshot.cropped(QRect());
    QTest::newRow("both") << screenshot.cropped(QRect(1, 0, 2, 2)).rotated(1);
}

// Every pixel still says where on the screen it was.
void tst_images::stayTrueWhenTurned()
{
    QFETCH(const Screenshot, turned);
    QVERIFY(!turned.image.isNull());
    for (int i = 0; i < turned.image.width() * turned.image.height(); ++i) {
        const QPoint pixel(i % turned.image.width(), i / turned.image.width());
        const QPointF middle = turned.transform.map(QPointF(pixel) + QPointF(0.5, 0.5));
        const QPoint was(qFloor((middle.x() - 100) / 2), qFloor((middle.y() + 50) / 2));
        QCOMPARE(turned.image.pixel(pixel), sixPixels().pixel(was));
    }
}

void tst_images::showObjects()
{
    Session session;
    QImage image = sixPixels();
    QPixmap pixmap = QPixmap::fromImage(image);
    const auto grab = [&] {
        const QVariant reply = session.call(u"grabObjectScreenshot"_s, { session.id(session.thing), 5, 0 });
        return screenshotFromVariant(reply).image;
    };
    QVERIFY(grab().isNull()); // no way to grab
    addGrabWidget(false);
    grabbed = imageClass("QImage")->wrap(&image, {});
    QCOMPARE(grab(), image);
    QCOMPARE(grabArgument, 0);
    QCOMPARE(session.error(), u""_s); // nothing of the form that was tried in vain
    addGrabWidget(true);
    grabbed = imageClass("QPixmap")->wrap(&pixmap, {});
    QCOMPARE(grab(), image);
    QCOMPARE(grabArgument, 5);
    grabbed = session.stranger;
    QVERIFY(grab().isNull());
    session.wrapper->picture = image;
    QCOMPARE(grab(), image);
    for (const SharedPtr<Object> &none : { SharedPtr<Object>(), imageClass("QImage")->createNull() }) {
        session.wrapper->picture = {};
        grabbed = none;
        QVERIFY(grab().isNull());
    }
    grabbed = nullptr;
    QVERIFY(!session.call(u"grabObjectScreenshot"_s, { session.id(session.stranger), 5, 0 }).isValid());
    QVERIFY(session.log.takeLines().isEmpty());
    QVERIFY(!session.call(u"grabObjectScreenshot"_s, { 4711, 5, 0 }).isValid());
    QCOMPARE(session.log.takeLines(), QStringList(u"Hook::grabObjectScreenshot: invalid object id 4711"_s));
}

void tst_images::endWithTheApplication_data()
{
    QTest::addColumn<int>("delay");
    for (const char *what : { "nothing", "the object" })
        QTest::newRow(what) << 1;
    for (const char *what : { "the hook", "the wrapper", "the application" })
        QTest::newRow(what) << 3'600'000; // an hour, unless the wait ends before
}

void tst_images::endWithTheApplication()
{
    QFETCH(const int, delay);
    const QByteArray what = QTest::currentDataTag();
    Session session;
    QImage image = sixPixels();
    grabbed = imageClass("QImage")->wrap(&image, {});
    QTimer::singleShot(0, qApp, [&] {
        if (what == "the object")
            session.thing->invalidate();
        else if (what == "the hook")
            delete Hook::hook;
        else if (what == "the wrapper")
            session.wrapper.reset();
        else if (what == "the application")
            QCoreApplication::exit();
    });
    PictureListener listener;
    const ArgumentList arguments { session.id(session.thing), 0, delay };
    session.hook->handleCall(1, u"grabObjectScreenshot"_s, arguments, &listener);
    QCOMPARE(listener.pictures, QList<QImage> { what == "nothing" ? image : QImage() });
    grabbed = nullptr;
}

void tst_images::showTheDesktop()
{
    Plugin plugin;
    Session session(&plugin);
    plugin.native.screenshot = ScreenshotResult::failure(u"too dark"_s);
    QVERIFY(!session.call(u"desktopScreenshot"_s).isValid());
    session.wrapper->desktop = u"the wrapper's"_s;
    QCOMPARE(session.call(u"desktopScreenshot"_s), session.wrapper->desktop);
    QCOMPARE(session.error(), u""_s);
    plugin.native.screenshot = {};
    plugin.native.screenshot.image = sixPixels();
    QCOMPARE(screenshotFromVariant(session.call(u"desktopScreenshot"_s)).image, sixPixels());
    QCOMPARE(plugin.native.heard.value(0), u"desktopScreenshot 0,0 -1x-1 -1"_s);
    PictureListener raw;
    session.hook->handleCall(1, u"rawScreenshot"_s, { 3 }, &raw);
    QCOMPARE(raw.pictures, QList<QImage> { sixPixels() });
    QCOMPARE(plugin.native.heard.last(), u"desktopScreenshot 0,0 -1x-1 3"_s);
    // By Qt alone
    const QVariant byQt = session.wrapper->Wrapper::desktopImage();
    QCOMPARE(screenshotFromVariant(byQt).image.size(), QGuiApplication::primaryScreen()->virtualSize());
}

void tst_images::showAreas()
{
    Plugin plugin;
    Session session(&plugin);
    const auto grab = [&](const ScreenRectangle &area) {
        return session.call(u"grabObjectScreenshot"_s, { session.id(wrapScreenRectangle(area)), 0, 0 });
    };
    QVERIFY(!grab({ 1, 2, 3, -4 }).isValid());
    QCOMPARE(session.error(), u"Invalid ScreenRectangle object"_s);
    plugin.native.screenshot = ScreenshotResult::failure(u"too dark"_s);
    QVERIFY(!grab({ 1, 2, 3, 4 }).isValid());
    QCOMPARE(session.error(), u"too dark"_s);
    const ScreenshotResult area =
            plugin.native.NativeInterface::desktopScreenshot(NativeRect::at(10, 20, 100, 50), -1);
    QCOMPARE(area.image.size(), QSize(100, 50));
    QCOMPARE(area.transform, QTransform::fromTranslate(-10, -20));
    plugin.native.screenshot = area;
    QCOMPARE(screenshotFromVariant(grab({ 1, 2, 3, 4 })).transform, area.transform);
    QCOMPARE(plugin.native.heard.last(), u"desktopScreenshot 1,2 3x4 -1"_s);
}

void tst_images::leaveAsPng()
{
    Session session;
    QImage image = sixPixels();
    const auto png = [&](const SharedPtr<Object> &object) {
        const QVariant reply = session.call(u"getPixmapAsImage"_s, { session.id(object) });
        return QImage::fromData(reply.toByteArray(), "PNG");
    };
    QCOMPARE(png(imageClass("QImage")->wrap(&image, {})).convertToFormat(image.format()), image);
    QVERIFY(png(session.stranger).isNull());
    session.wrapper->picture = image;
    QCOMPARE(png(session.stranger).convertToFormat(image.format()), image);
    QVERIFY(!session.call(u"getPixmapAsImage"_s, { 4711 }).isValid());
    QCOMPARE(session.log.takeLines(), QStringList(u"Hook::getPixmapAsImage: invalid object id 4711"_s));
}

void tst_images::comeFromScreens()
{
    Session session;
    const auto ask = [](const char *what, const ObjectList &arguments) {
        bool ok = false;
        const QString name = u"_vorkel_screen_%1"_s.arg(QLatin1String(what));
        return Inspector::self()->globalClass()->Class::methods(name).invoke(nullptr, arguments, &ok);
    };
    const auto number = [](int value) { return Inspector::self()->createPrimitive(value); };
    QCOMPARE(ask("count_get", {})->toInteger(), QGuiApplication::screens().size());
    const QRect area = QGuiApplication::primaryScreen()->geometry();
    QCOMPARE(unwrapScreenRectangle(ask("geometry_get", { number(0) })),
             (ScreenRectangle { area.x(), area.y(), area.width(), area.height() }));
    QCOMPARE(ask("orientation_get", { number(0) })->toInteger(), 1);
    for (const int index : { -1, 99 }) {
        QVERIFY(!ask("geometry_get", { number(index) }));
        QCOMPARE(session.error(), u"There is no screen %1"_s.arg(index));
    }
    QVERIFY(!ask("orientation_set", { number(0), number(2) }));
    QCOMPARE(session.error(), u"Modifying screen orientation is not supported on this platform"_s);
    session.hook->setScreen(nullptr);
    QVERIFY(!ask("count_get", {}));
}

QTEST_MAIN(tst_images)

#include "tst_images.moc"
