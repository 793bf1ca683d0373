#!/usr/bin/env bash
# Installs the Khronos glTF validator (the npm package gltf-validator, a JavaScript library)
# into build/gltf-validator, where the glTF tests look for it. Without Node.js it says so
# and the tests skip the validation.
set -euo pipefail
cd "$(dirname "$0")/.."
folder=${1:-build}/gltf-validator
if ! command -v node > /dev/null || ! command -v npm > /dev/null; then
  echo "Node.js and npm are not installed: glTF files will not be validated"
  exit 0
fi
if [ ! -f "$folder/node_modules/gltf-validator/package.json" ]; then
  mkdir -p "$folder"
  npm install --prefix "$folder" --no-audit --no-fund --loglevel=error gltf-validator@2.0.0-dev.3.10 > /dev/null
fi
echo "glTF validator: $folder/node_modules/gltf-validator"
