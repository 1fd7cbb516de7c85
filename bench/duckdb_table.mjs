// The table work of the task in DuckDB: reads a CSV file of records, averages five channels and
// writes the columns named in a list with their decimals.
//
//   node duckdb_table.mjs RECORDS.csv NUM_CHANNELS CHANNELS OUTPUT
import {readFileSync} from 'node:fs';
import {DuckDBInstance} from '@duckdb/node-api';

const [records, num_channels, channels, output] = process.argv.slice(2);
const columns = readFileSync(channels, 'utf8').trim().split('\n').map(line => line.split(' '));
const text = value => `'${value.replaceAll("'", "''")}'`;

const connection = await (await DuckDBInstance.create(':memory:', {threads: '2'})).connect();
await connection.run(`create table log as from read_csv(${text(records)}, header = true,
    auto_detect = false, delim = ',', columns = {${
    Array.from({length: Number(num_channels)}, (_, i) => `c${i}: 'DOUBLE'`).join(', ')}})`);
const means = await connection.runAndReadAll(
    `select ${[3, 4, 5, 6, 7].map(i => `avg(c${i})`).join(', ')} from log`);
console.log(means.getRows()[0].join(' '));
await connection.run(`copy (select ${
    columns.map(([channel, decimals], i) => `c${channel}::decimal(18, ${decimals}) as x${i}`).join(', ')
} from log) to ${text(output)} (header false)`);
