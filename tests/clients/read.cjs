// Reads exports with libraries of others, and prints one JSON object of what they hold.
//
//   node read.cjs gpkg FILE | geojson FILE... | csv FILE...
//
// NODE_PATH names the folder of the libraries.
'use strict';
const fs = require('fs');
const path = require('path');

// Sums over coordinates as they were read: the length of lines and rings, the signed area of rings.
function measure(geometry, sums) {
  const visit = (part) => {
    if (typeof part[0][0] !== 'number') return part.forEach(visit);
    for (let at = 1; at < part.length; ++at) {
      const [x, y] = part[at - 1];
      const [u, v] = part[at];
      sums.length += Math.hypot(u - x, v - y);
      sums.area += ((x - part[0][0]) * (v - part[0][1]) - (u - part[0][0]) * (y - part[0][1])) / 2;
    }
    sums.vertices += part.length;
    for (const [x, y] of part) sums.farthest = Math.max(sums.farthest, Math.abs(x), 2 * Math.abs(y));
  };
  if (!geometry) return;
  if (geometry.type === 'Point') sums.vertices += 1;
  else visit(geometry.coordinates);
  for (const [at, ring] of rings(geometry)) {
    const own = empty();
    measure({ type: 'LineString', coordinates: ring }, own);
    if (own.area > 0 !== (at === 0)) ++sums.wrong;
  }
}

// The rings of polygons, each with its place in its polygon: 0 for an outer one.
function rings(geometry) {
  const polygons = { Polygon: (all) => [all], MultiPolygon: (all) => all }[geometry.type];
  return polygons ? polygons(geometry.coordinates).flatMap((each) => [...each.entries()]) : [];
}

// farthest: of longitudes, or twice a latitude; wrong: rings that go the wrong way round.
const empty = () => ({ count: 0, geometries: 0, vertices: 0, length: 0, area: 0, farthest: 0,
  wrong: 0, columns: {} });

function addColumns(values, sums) {
  for (const [name, value] of Object.entries(values)) {
    if (typeof value === 'number' && Number.isFinite(value)) {
      sums.columns[name] = (sums.columns[name] || 0) + value;
    }
  }
}

async function gpkg(file) {
  // The library takes its wasm by fetch where there is one, which knows no files.
  delete globalThis.fetch;
  console.error = () => {};
  console.log = () => {};
  const { GeoPackageAPI, setSqljsWasmLocateFile } = require('@ngageoint/geopackage');
  const dist = path.dirname(require.resolve('@ngageoint/geopackage'));
  setSqljsWasmLocateFile((name) => path.join(dist, name));
  const opened = await GeoPackageAPI.open(file);
  const result = { problems: (await opened.validate()).map(String), layers: {} };
  for (const table of opened.getFeatureTables()) {
    const sums = (result.layers[table] = empty());
    sums.polygons = [];
    const dao = opened.getFeatureDao(table);
    for (const row of dao.queryForAll()) {
      const feature = dao.getRow(row);
      const geometry = feature.geometry && feature.geometry.toGeoJSON();
      ++sums.count;
      if (geometry) ++sums.geometries;
      const own = empty();
      measure(geometry, own);
      for (const each of ['vertices', 'length', 'area']) sums[each] += own[each];
      addColumns(feature.values, sums);
      if (geometry && /Polygon/.test(geometry.type) && 'AREA' in feature.values) {
        sums.polygons.push([own.area, own.length, feature.values.AREA, feature.values.PERIMETER]);
      }
    }
  }
  for (const table of opened.getAttributesTables()) {
    const sums = (result.layers[table] = empty());
    for (const row of opened.getAttributeDao(table).queryForAll()) {
      ++sums.count;
      addColumns(row, sums);
    }
  }
  opened.close();
  return result;
}

function geojson(files) {
  const { check } = require('@placemarkio/check-geojson');
  const result = { layers: {} };
  for (const file of files) {
    const text = fs.readFileSync(file, 'utf8');
    check(text);
    const sums = (result.layers[path.basename(file, '.geojson')] = empty());
    for (const feature of JSON.parse(text).features) {
      ++sums.count;
      if (feature.geometry) ++sums.geometries;
      measure(feature.geometry, sums);
      addColumns(feature.properties, sums);
    }
  }
  return result;
}

function csv(files) {
  const { parse } = require('csv-parse/sync');
  const result = { layers: {} };
  for (const file of files) {
    const sums = (result.layers[path.basename(file, '.csv')] = empty());
    for (const row of parse(fs.readFileSync(file, 'utf8'), { columns: true, bom: true })) {
      ++sums.count;
      for (const name of Object.keys(row)) {
        row[name] = row[name] === '' ? NaN : Number(row[name]);
      }
      addColumns(row, sums);
    }
  }
  return result;
}

(async () => {
  const [kind, ...files] = process.argv.slice(2);
  const read = { gpkg: () => gpkg(files[0]), geojson: () => geojson(files), csv: () => csv(files) };
  process.stdout.write(JSON.stringify(await read[kind]()) + '\n');
})().catch((error) => {
  process.stderr.write(`${error.stack || error}\n`);
  process.exit(1);
});
