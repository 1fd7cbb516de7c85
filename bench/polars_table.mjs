// The table work of the task in Polars: reads a CSV file of records, averages five channels and
// writes the columns named in a list with their decimals.
//
//   node polars_table.mjs RECORDS.csv NUM_CHANNELS CHANNELS OUTPUT
import {readFileSync} from 'node:fs';
import pl from 'nodejs-polars';

const [records, num_channels, channels, output] = process.argv.slice(2);
const columns = readFileSync(channels, 'utf8').trim().split('\n').map(line => line.split(' '));

const schema = Object.fromEntries(
    Array.from({length: Number(num_channels)}, (_, i) => [`c${i}`, pl.Float64]));
const log = pl.readCSV(records, {schema});
console.log([3, 4, 5, 6, 7].map(i => log.getColumn(`c${i}`).mean()).join(' '));
log.select(...columns.map(([channel, decimals], i) =>
    pl.col(`c${channel}`).round({decimals: Number(decimals)})
        .cast(pl.Decimal(18, Number(decimals))).alias(`x${i}`)))
    .writeCSV(output, {includeHeader: false});
