#!/usr/bin/env python3
"""Times the whole task beside other programs that do its table work alone.

    cmake --preset bench && cmake --build --preset bench
    bench/compare.py build/bench                 # the task beside table_work (from_chars, to_chars)
    bench/compare.py build/bench --others        # DuckDB and Polars too, installed from npm

S and L are simulated tests of 18,000 and 72,000 records of 500 channels, 400 of them specified;
"10 x L" has 720,000 records of 60 channels, "small" 600 of 60. All programs read the same values and
write the same columns; the others do nothing else. Runs take turns. The table gives medians; ratios
are taken within each turn, with the smallest and largest in brackets.
"""
import argparse
import os
import pathlib
import random
import statistics
import subprocess
import time

BENCH = pathlib.Path(__file__).resolve().parent
SIZES = {
    'S': dict(rate=10, cycle=1748, channels=500, specified=400),
    'L': dict(rate=10, cycle=7148, channels=500, specified=400),
    '10 x L': dict(rate=100, cycle=7148, channels=60),
    'small': dict(rate=10, cycle=8, channels=60),
}
TASK_WORDS = '''logr_spec=logr_spec.dat logr_data=logr_data.42 quon5_output=results/M123/quon5.FTP step=1
    cycle=FTP ci_specs=ci_specs.dat orda_specs=orda_specs.dat em_bench=em_bench.42
    restr=tests/maps/M123/restr.dat cell_cfg=cell_cfg.dat quon_end_out=quon_end.42
    quon6=results/M123/quon6.FTP quon7=results/M123/quon7.FTP pm_cart=pm_cart.42
    filt_data=filter_data.42 FTIR_file=ftir.42 activity=benchmark'''.split()
OUTPUTS = ['results/M123/quon5.FTP', 'filter_data.42', 'quon_end.42', 'table.out', 'duckdb.out',
           'polars.out']


def prepare(programs, directory, options, with_csv):
    """Makes the files of a simulated test; returns its records, channels and bytes of values."""
    log = directory / 'logr_data.42'
    if not log.exists():
        directory.mkdir(parents=True, exist_ok=True)
        words = [f'{name}={value}' for name, value in options.items()]
        subprocess.run([programs / 'simulate_test', f'output={directory}', *words], check=True,
                       stdout=subprocess.DEVNULL)
    decimals = []
    num_records = 0
    csv = directory / 'records.csv'
    with open(log) as text:
        for line in text:
            if line.startswith('@LOGGED_CHANNELS'):
                break
        for line in text:
            if line.startswith('@'):
                break
            if not line.startswith('#') and line.strip():
                decimals.append(line.split()[-1])
        if not line.startswith('@LOGGED_RECORDS'):
            while not next(text).startswith('@LOGGED_RECORDS'):
                pass
        out = open(csv, 'w') if with_csv and not csv.exists() else open(os.devnull, 'w')
        with out:
            out.write(','.join(f'c{i}' for i in range(len(decimals))) + '\n')
            for line in text:
                out.write(line)
                num_records += 1
    columns = list(range(options.get('specified', len(decimals))))
    random.Random(1).shuffle(columns)
    (directory / 'columns.txt').write_text(''.join(f'{c} {decimals[c]}\n' for c in columns))
    return num_records, len(decimals)


def timed(command, directory, environment):
    """Removes the outputs of earlier runs, which takes time, then runs the command. Returns wall
    seconds, CPU seconds, peak MiB."""
    for name in OUTPUTS:
        (directory / name).unlink(missing_ok=True)
    start = time.perf_counter()
    with open(os.devnull, 'w') as sink:
        process = subprocess.Popen(command, cwd=directory, stdout=sink, stderr=sink,
                                   env=dict(os.environ, **environment))
        _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    if status != 0:
        raise SystemExit(f'{command[0]} failed in {directory}: {status}')
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def ratio(ours, theirs):
    ratios = [a / b for a, b in zip(ours, theirs)]
    return f'{statistics.median(ratios):.3f} ({min(ratios):.3f} to {max(ratios):.3f})'


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('build', type=pathlib.Path, help='where the bench preset was built')
    parser.add_argument('--runs', type=int, default=5)
    parser.add_argument('--others', action='store_true', help='install and time DuckDB and Polars')
    parser.add_argument('--sizes', nargs='+', default=list(SIZES), choices=list(SIZES))
    options = parser.parse_args()
    programs = options.build.resolve()
    modules = programs / 'compare' / 'npm'
    if options.others:
        modules.mkdir(parents=True, exist_ok=True)
        subprocess.run(['npm', 'install', '--silent', '--prefix', modules, '@duckdb/node-api',
                        'nodejs-polars', 'nodejs-polars-linux-x64-gnu'], check=True)
        for script in BENCH.glob('*_table.mjs'):  # modules are found from where the script lies
            (modules / script.name).write_text(script.read_text())

    for size in options.sizes:
        directory = programs / 'compare' / size.replace(' ', '')
        compare = size in ('S', 'L')
        records, channels = prepare(programs, directory, SIZES[size], options.others and compare)
        commands = {'the task': [programs / 'quon5', *TASK_WORDS]}
        if compare:
            commands['table_work'] = [programs / 'bench' / 'table_work', 'logr_data.42',
                                      'columns.txt', 'table.out']
        if options.others and compare:
            for name in ('duckdb', 'polars'):
                commands[f'{name}, 2 threads'] = [
                    'node', modules / f'{name}_table.mjs', 'records.csv', str(channels),
                    'columns.txt', f'{name}.out']
        environment = {'TAVRIN_ERROR_LOG': os.devnull, 'POLARS_MAX_THREADS': '2',
                       'TAVRIN_KEYWORD_MEMORY': 'keyword_memory.dat'}
        runs = {name: [] for name in commands}
        for _ in range(options.runs):
            for name, command in commands.items():
                runs[name].append(timed(command, directory, environment))

        values = records * channels
        print(f'\n{size}: {records} records of {channels} channels, '
              f'values {values * 8 / 2**20:.0f} MiB')
        print('| | wall s | CPU s | peak MiB | CPU ns a value | task / this, wall | CPU |')
        print('|---|---|---|---|---|---|---|')
        ours = list(zip(*runs['the task']))
        for name, measured in runs.items():
            columns = list(zip(*measured))
            wall, cpu, peak = (statistics.median(column) for column in columns)
            print(f'| {name} | {wall:.4f} | {cpu:.4f} | {peak:.0f} | {cpu * 1e9 / values:.1f} | '
                  f'{ratio(ours[0], columns[0])} | {ratio(ours[1], columns[1])} |')


if __name__ == '__main__':
    main()
