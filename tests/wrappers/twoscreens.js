// A second screen, which is scaled.

import { expectClicksToLand } from './landing.js';

for (const x of [100, 900]) {
    test('clicks land at ' + x, () => {
        const app = launch();
        app.find({ name: 'window' }).set('geometry', { x: x, y: 30, width: 360, height: 400 });
        const pad = app.find({ name: 'pad' });
        waitUntil(() => pad.bounds().x === x);
        expectClicksToLand(app);
    });
}
