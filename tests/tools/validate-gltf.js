// Validates one glTF file with the Khronos glTF validator and prints a summary as JSON:
//   node validate-gltf.js VALIDATOR_MODULE_FOLDER FILE
const fs = require('fs');
const path = require('path');
const validator = require(path.resolve(process.argv[2]));
const file = process.argv[3];
const readBeside = (uri) => new Promise((resolve, reject) => {
  fs.readFile(path.resolve(path.dirname(file), decodeURIComponent(uri)),
              (err, data) => (err ? reject(err.toString()) : resolve(new Uint8Array(data))));
});
validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {uri: path.basename(file), maxIssues: 50,
                                                                  externalResourceFunction: readBeside})
  .then((report) => {
    const errors = report.issues.messages.filter((m) => m.severity === 0);
    console.log(JSON.stringify({errors: report.issues.numErrors, warnings: report.issues.numWarnings,
                                first: errors.slice(0, 10)}));
  })
  .catch((e) => {
    console.error(String(e));
    process.exit(1);
  });
