// Reads GeoTIFFs with a library of others, and prints one JSON object of what they hold.
//
//   node rasters.cjs cells FILE    all cells, and where they lie
//   node rasters.cjs afar FILE     an overview and a window of it, over HTTP by ranges of bytes
//
// NODE_PATH names the folder of the libraries.
'use strict';
const fs = require('fs');
const http = require('http');
const path = require('path');
const { pathToFileURL } = require('url');

// The library is a module of the newer kind, which NODE_PATH does not find.
async function library() {
  for (const folder of process.env.NODE_PATH.split(':')) {
    const home = path.join(folder, 'geotiff');
    if (!fs.existsSync(home)) continue;
    const { exports, main } = JSON.parse(fs.readFileSync(path.join(home, 'package.json'), 'utf8'));
    const entry = (exports && (exports['.'] || exports).import) || main;
    return import(pathToFileURL(path.join(home, entry.default || entry)));
  }
  throw new Error('there is no library geotiff');
}

const orText = (value) => (Number.isFinite(value) ? value : String(value));

const noDataOf = (directory) =>
  directory.hasTag(42113) ? Number(directory.getValue(42113).replace('\0', '')) : null;

async function describe(image, withCells) {
  const [width, height] = [image.getWidth(), image.getHeight()];
  const found = { width, height, bits: image.getBitsPerSample(), format: image.getSampleFormat() };
  if (withCells) {
    const bands = await image.readRasters();
    found.bands = Array.from(bands, (band) => Array.from(band, orText));
  }
  return found;
}

async function cells(file) {
  const { fromArrayBuffer } = await library();
  const bytes = fs.readFileSync(file);
  const tiff = await fromArrayBuffer(
    bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.byteLength));
  const images = [];
  for (let at = 0; at < (await tiff.getImageCount()); ++at) {
    images.push(await describe(await tiff.getImage(at), true));
  }
  const image = await tiff.getImage(0);
  return {
    images,
    origin: image.getOrigin(),
    resolution: image.getResolution(),
    box: image.getBoundingBox(),
    noData: noDataOf(image.fileDirectory),
    points: image.pixelIsArea() === false,
    keys: image.getGeoKeys(),
  };
}

async function afar(file) {
  const { fromUrl } = await library();
  const size = fs.statSync(file).size;
  const answers = [];
  const server = http.createServer((request, response) => {
    const range = /^bytes=(\d+)-(\d+)$/.exec(request.headers.range || '');
    if (!range) {
      answers.push([0, size]);
      response.writeHead(200, { 'Content-Length': size });
      return fs.createReadStream(file).pipe(response);
    }
    const [start, end] = [Number(range[1]), Math.min(Number(range[2]), size - 1)];
    answers.push([start, end + 1 - start]);
    response.writeHead(206, {
      'Content-Range': `bytes ${start}-${end}/${size}`,
      'Content-Length': end + 1 - start,
    });
    return fs.createReadStream(file, { start, end }).pipe(response);
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  const tiff = await fromUrl(`http://127.0.0.1:${server.address().port}/grid.tif`, {
    blockSize: 16384,
  });
  const count = await tiff.getImageCount();
  const overview = await describe(await tiff.getImage(count - 1), true);
  const image = await tiff.getImage(0);
  const window = await image.readRasters({ window: [600, 100, 700, 130] });
  server.closeAllConnections();
  server.close();
  return {
    size,
    count,
    overview,
    window: Array.from(window[0], orText),
    bytes: answers.reduce((sum, [, length]) => sum + length, 0),
    firstEnd: answers[0][1],
    whole: answers.some(([, length]) => length === size),
  };
}

(async () => {
  const [what, file] = process.argv.slice(2);
  process.stdout.write(JSON.stringify(await { cells, afar }[what](file)) + '\n');
})().catch((error) => {
  process.stderr.write(`${error.stack || error}\n`);
  process.exit(1);
});
