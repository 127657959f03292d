// Checks glTF files with the Khronos validator (npm package gltf-validator).
//
//   node validate.js SAVED ORIGINAL [SAVED ORIGINAL ...]
//
// A saved model passes when the validator finds no error in it that it does not also find in the
// original (some third-party models carry errors of their own). Exit status 1 when any fails.
const validator = require('gltf-validator');
const fs = require('fs');
const path = require('path');

async function errorsOf(file) {
  const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
    uri: file,
    externalResourceFunction: (uri) =>
      new Promise((resolve, reject) => {
        fs.readFile(path.resolve(path.dirname(file), decodeURIComponent(uri)), (error, data) =>
          error ? reject(error.toString()) : resolve(new Uint8Array(data)));
      }),
  });
  return report.issues.messages
    .filter((message) => message.severity === 0)
    .map((message) => `${message.code} ${message.pointer || ''}`);
}

(async () => {
  const files = process.argv.slice(2);
  let failed = 0;
  for (let i = 0; i + 1 < files.length; i += 2) {
    const saved = await errorsOf(files[i]);
    const original = new Set(await errorsOf(files[i + 1]));
    const added = saved.filter((error) => !original.has(error));
    console.log(`${files[i]}: ${saved.length} errors (${added.length} not in the original)`);
    for (const error of added) {
      console.log(`  ${error}`);
    }
    if (added.length > 0) failed++;
  }
  process.exit(failed > 0 ? 1 : 0);
})();
