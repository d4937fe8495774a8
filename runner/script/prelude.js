// The part of the script interface that is best said in the script language itself: names from object
// literals, any number of arguments, and expectations. Gives the function that calls another one and tells
// what that threw.
(function (host, global) {
    'use strict';

    // Names

    function quoted(value) {
        return "'" + String(value).replace(/[\\']/g, '\\$&') + "'";
    }

    function demand(key, value) {
        if (value instanceof RegExp)
            return key + '~=' + quoted((value.ignoreCase ? '(?i)' : '') + value.source);
        if (value instanceof Locator)
            return key + '=' + quotedName(value._target.name());
        if (value !== null && typeof value === 'object')
            return key + '=' + nameOf(value);
        return key + '=' + quoted(value);
    }

    function quotedName(name) {
        return name.startsWith('{') ? name : quoted(name);
    }

    function nameOf(what) {
        if (typeof what === 'string')
            return what;
        if (what === null || typeof what !== 'object')
            throw new TypeError('a name is a text or an object of properties, not ' + shown(what));
        return '{' + Object.keys(what).map(key => demand(key, what[key])).join(' ') + '}';
    }

    // Values

    function unwrapped(value) {
        if (value instanceof Locator)
            return value._target;
        return Array.isArray(value) ? value.map(unwrapped) : value;
    }

    function wrapped(value) {
        if (Array.isArray(value))
            return value.map(wrapped);
        return value !== null && typeof value === 'object' && value.isTarget === true ? new Locator(value) : value;
    }

    function clickOptions(options) {
        const known = ['button', 'modifiers', 'x', 'y'];
        for (const key of Object.keys(options)) {
            if (!known.includes(key))
                throw new TypeError("there is no option '" + key + "', but " + known.join(', '));
        }
        return typeof options.modifiers === 'string' ? Object.assign({}, options, { modifiers: [options.modifiers] }) : options;
    }

    // What scripts work with

    class Locator {
        constructor(target) { Object.defineProperty(this, '_target', { value: target }); }

        find(what) { return new Locator(this._target.below(nameOf(what))); }
        item(rowOrText, column = 0) {
            return new Locator(typeof rowOrText === 'number' ? this._target.itemAt(rowOrText, column)
                                                             : this._target.itemNamed(rowOrText));
        }

        click(options = {}) { this._target.click(clickOptions(options)); }
        doubleClick(options = {}) { this._target.doubleClick(clickOptions(options)); }
        tap(options = {}) { this._target.tap(clickOptions(options)); }
        rightClick(options = {}) { this._target.click(Object.assign({}, clickOptions(options), { button: 'right' })); }
        hover(options = {}) { this._target.hover(clickOptions(options)); }
        wheel(notches) { this._target.wheel(notches); }
        dragTo(other, options = {}) { this._target.dragTo(unwrapped(other), clickOptions(options)); }
        type(text) { this._target.type(String(text)); }
        press(keys) { this._target.press(keys); }
        fill(text) { this._target.fill(String(text)); }
        select(text) { this._target.select(String(text)); }
        check() { this._target.setChecked(true); }
        uncheck() { this._target.setChecked(false); }
        menu(...path) { this._target.menu(path); }

        get(property) { return wrapped(this._target.get(property)); }
        set(property, value) { this._target.set(property, unwrapped(value)); }
        call(method, ...values) { return wrapped(this._target.call(method, unwrapped(values))); }
        text() { return this._target.shownText(); }
        name() { return this._target.name(); }
        exists() { return this._target.exists(); }
        count() { return this._target.count(); }
        bounds() { return this._target.bounds(); }
        screenshot(path) { this._target.screenshot(path); }

        waitFor({ timeout = -1 } = {}) { this._target.expect('BeVisible', false, null, '', timeout); }
        waitUntilReady({ timeout = -1 } = {}) { this._target.expect('BeReady', false, null, '', timeout); }
        waitUntilGone({ timeout = -1 } = {}) { this._target.expect('BeVisible', true, null, '', timeout); }

        toString() { return this._target.text; }
    }

    class App {
        constructor(program) { Object.defineProperty(this, '_program', { value: program }); }

        get isRunning() { return this._program.isRunning; }
        get name() { return this._program.name; }

        find(what) { return new Locator(this._program.find(nameOf(what))); }
        menu(...path) { this._program.menu(path); }
        keys(keys) { this._program.keys(keys); }
        clipboard() { return this._program.clipboard(); }
        setClipboard(text) { this._program.setClipboard(String(text)); }
        call(name, ...values) { return wrapped(this._program.call(name, unwrapped(values))); }
        remote(name, ...values) { return this._program.remote(name, unwrapped(values)); }
        enumValue(name, keys) { return this._program.enumValue(name, keys); }
        screenshot(path) { this._program.screenshot(path); }
        tree() { return this._program.tree(); }
        quit() { this._program.quit(); }

        toString() { return this._program.name; }
    }

    // Expectations

    class LocatorExpectation {
        constructor(target, negated, timeout) {
            this._expect = (kind, expected = null, property = '') =>
                target.expect(kind, negated, unwrapped(expected), property, timeout);
            if (!negated)
                this.not = new LocatorExpectation(target, true, timeout);
        }

        toExist() { this._expect('Exist'); }
        toBeVisible() { this._expect('BeVisible'); }
        toBeEnabled() { this._expect('BeEnabled'); }
        toBeChecked() { this._expect('BeChecked'); }
        toBeReady() { this._expect('BeReady'); }
        toHaveFocus() { this._expect('HaveFocus'); }
        toHaveText(text) { this._expect('HaveText', text); }
        toHaveProperty(name, value) { this._expect('HaveProperty', value, name); }
        toHaveCount(count) { this._expect('HaveCount', count); }
    }

    class AppExpectation {
        constructor(program, negated) {
            this._check = () => program.expectRunning(negated);
            if (!negated)
                this.not = new AppExpectation(program, true);
        }

        toBeRunning() { this._check(); }
    }

    function shown(value) {
        if (typeof value === 'string')
            return quoted(value);
        if (typeof value === 'object' && value !== null && !(value instanceof RegExp) && !(value instanceof Locator))
            return JSON.stringify(value);
        return String(value);
    }

    function equal(a, b) {
        if (Object.is(a, b))
            return true;
        if (typeof a !== 'object' || typeof b !== 'object' || a === null || b === null)
            return false;
        const keys = Object.keys(a);
        return Array.isArray(a) === Array.isArray(b) && keys.length === Object.keys(b).length
            && keys.every(key => Object.prototype.hasOwnProperty.call(b, key) && equal(a[key], b[key]));
    }

    function contains(whole, part) {
        if (typeof whole === 'string')
            return whole.includes(part);
        return Array.isArray(whole) && whole.some(each => equal(each, part));
    }

    class ValueExpectation {
        constructor(actual, negated) {
            this._judge = (holds, relation, expected) => {
                const wanted = (negated ? 'not ' : '') + relation + shown(expected);
                const failed = holds === negated;
                const message = failed ? '\n  expected: ' + wanted + '\n  actual:   ' + shown(actual) : '';
                const what = 'expect ' + wanted;
                host.step(what, 0, message);
                if (failed)
                    throw new Error(what + ':' + message);
            };
            this._actual = actual;
            if (!negated)
                this.not = new ValueExpectation(actual, true);
        }

        toBe(expected) { this._judge(Object.is(this._actual, expected), '', expected); }
        toEqual(expected) { this._judge(equal(this._actual, expected), 'equal to ', expected); }
        toContain(part) { this._judge(contains(this._actual, part), 'containing ', part); }
        toMatch(pattern) {
            this._judge(new RegExp(pattern).test(String(this._actual)), 'matching ', pattern);
        }
        toBeGreaterThan(number) { this._judge(this._actual > number, 'greater than ', number); }
        toBeLessThan(number) { this._judge(this._actual < number, 'less than ', number); }
        toBeTruthy() { this._judge(Boolean(this._actual), 'something that counts as ', true); }
    }

    global.expect = function expect(actual, { timeout = -1 } = {}) {
        if (actual instanceof Locator)
            return new LocatorExpectation(actual._target, false, timeout);
        return actual instanceof App ? new AppExpectation(actual._program, false)
                                     : new ValueExpectation(actual, false);
    };

    global.waitUntil = function waitUntil(condition, { timeout = host.limit(), message = '' } = {}) {
        const start = Date.now();
        const what = 'wait until ' + (message || 'a condition holds');
        for (;;) {
            const value = condition();
            const elapsed = Date.now() - start;
            if (value || elapsed > timeout) {
                const failure = value ? '' : 'it did not within ' + timeout / 1000 + ' s';
                host.step(what, elapsed, failure);
                if (!value)
                    throw new Error(what + ': ' + failure);
                return value;
            }
            host.idle(15);
        }
    };

    // Programs and tests

    global.launch = function launch(command = [], options = {}) {
        const words = typeof command === 'string' ? [command] : command;
        return Array.isArray(words) ? new App(host.launch(words, options)) : new App(host.launch([], words));
    };

    function checked(name, body) {
        if (typeof name !== 'string' || typeof body !== 'function')
            throw new TypeError('a test has a name and a function');
        return body;
    }

    global.test = function test(name, body) { host.addTest(name, checked(name, body), false); };
    global.test.skip = function skip(name, body) { host.addTest(name, checked(name, body), true); };
    global.beforeEach = function beforeEach(body) { host.addBefore(checked('', body)); };
    global.afterEach = function afterEach(body) { host.addAfter(checked('', body)); };
    global.log = function log(...values) {
        host.log(values.map(value => typeof value === 'string' ? value : shown(value)).join(' '));
    };

    return function guarded(body) {
        try {
            body();
            return {};
        } catch (thrown) {
            return { thrown: thrown };
        }
    };
})
