// parse.mjs FILE...: parses Dart files and reports the first error of each. First it parses three broken texts, which must
// be refused, because a parser that accepts everything would prove nothing.
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { Language, Parser } from 'web-tree-sitter';

const grammar = createRequire(import.meta.url).resolve('tree-sitter-wasms/out/tree-sitter-dart.wasm');
await Parser.init();
const parser = new Parser();
parser.setLanguage(await Language.load(grammar));

// Returns the first node of the tree that is an error or was inserted by the parser, or null.
function fault(node) {
  if (node.isError || node.isMissing) return node;
  for (const child of node.children) {
    const found = fault(child);
    if (found) return found;
  }
  return null;
}

const broken = ['class A { void f( { } }', 'class A { int x = ; }', 'class A { Future<void> f() async { await g() } }'];
if (!broken.every((text) => fault(parser.parse(text).rootNode))) {
  console.error('the grammar accepts a text that is not Dart');
  process.exit(1);
}

let failed = 0;
const files = process.argv.slice(2);
for (const file of files) {
  const text = readFileSync(file, 'utf8');
  const found = fault(parser.parse(text).rootNode);
  if (!found) continue;
  failed += 1;
  const { row, column } = found.startPosition;
  console.error(`${file}:${row + 1}:${column + 1}: does not parse: ${text.split('\n')[row].trim()}`);
}
if (files.length === 0) console.error('there is no Dart file to parse');
else console.log(`${files.length - failed} of ${files.length} Dart files parse. They have not been compiled.`);
process.exit(failed || files.length === 0 ? 1 : 0);
