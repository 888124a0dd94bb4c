// Serves a folder on this machine only: serve.mjs FOLDER. Prints the port.
import {createReadStream, existsSync, statSync} from "node:fs";
import {createServer} from "node:http";
import {extname, join, normalize} from "node:path";

const folder = process.argv[2];
const types = {".html": "text/html", ".js": "text/javascript", ".css": "text/css"};

const server = createServer((request, response) => {
  const path = normalize(decodeURIComponent(new URL(request.url, "http://localhost").pathname));
  const file = join(folder, path);
  if (!existsSync(file) || !statSync(file).isFile()) {
    response.writeHead(404).end();
    return;
  }
  response.writeHead(200, {"content-type": types[extname(file)] || "application/octet-stream"});
  createReadStream(file).pipe(response);
});
server.listen(0, "127.0.0.1", () => console.log(server.address().port));
