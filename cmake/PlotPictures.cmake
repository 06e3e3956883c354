# cmake -DPROGRAM=<nivora-batch> -DRECORD=<ellervane-1997-98.NVR> -DFOLDER=<folder> -P PlotPictures.cmake
#
# Draws each plot of the sample basin into plot-<number>.png, at twice the size of a screen, as the manual shows them.

set(simulation --simulation wy1998)
file(MAKE_DIRECTORY "${FOLDER}")
file(REMOVE "${FOLDER}/sample.mdb")

function(nivora_batch)
    execute_process(COMMAND "${PROGRAM}" ${ARGN} WORKING_DIRECTORY "${FOLDER}" OUTPUT_QUIET ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# draw(<number> [<option>...])
function(draw number)
    nivora_batch(plot sample.mdb ${simulation} --plot ${number} --out plot-${number}.png --size 1600x900 --dpi 192
        --now 2026-03-05T13:30:15 ${ARGN})
endfunction()

nivora_batch(import "${RECORD}" sample.mdb --name wy1998 --initial-runoff 2.851 --latitude 46.5)
nivora_batch(run sample.mdb ${simulation} --kind year-round)
foreach(number IN ITEMS 1 2 3 4 5 6 7 8 9 10 11 12 13)
    draw(${number} --kind year-round)
endforeach()
nivora_batch(plot sample.mdb ${simulation} --plot 1 --kind year-round --zoom 1998-05-10,1998-06-30,0,35
    --out plot-1-june.png --size 1600x900 --dpi 192 --now 2026-03-05T13:30:15)
foreach(number IN ITEMS 14 15 16)
    draw(${number} --kind year-round --zone C --melt-stop season)
endforeach()

nivora_batch(scenario sample.mdb ${simulation} --name warmer --winter-end 1998-03-31
    --edit "Average Temperature:1997-10-01:1998-09-30:Add/subtract to each:2:All"
    --edit "Precipitation:1997-10-01:1998-09-30:Multiply each:1.1:All")
nivora_batch(climate sample.mdb ${simulation} --scenario warmer)
foreach(number IN ITEMS 18 19)
    draw(${number} --step 6 --scenario warmer)
endforeach()
foreach(number IN ITEMS 20 21 22 23)
    draw(${number} --step 6 --scenario warmer --zone C --melt-stop season)
endforeach()

get_filename_component(program_folder "${PROGRAM}" DIRECTORY)
nivora_batch(response "${program_folder}/samples/ellervane.mdb" --simulation ellervane-1997-98 --winter-end 1998-03-31
    --temperature 0..5:0.5 --precipitation 0.7..1.3:0.1 --picture response.png)
nivora_batch(sample "${program_folder}/samples/ellervane.mdb" --simulation ellervane-1997-98
    --free "Degree Day Factors:multiply:0.7..1.4:All" --free "Critical Temperature:add:-1..1:All"
    --free "Recession Coefficient x:multiply:0.9..1.05:All" --runs 5000 --sensitivity --keep "NSE>0.9"
    --out bands-runs.csv --picture bands.png --size 1600x900 --dpi 192)

file(REMOVE "${FOLDER}/sample.mdb" "${FOLDER}/NVR_DfGN.out" "${FOLDER}/bands-runs.csv")
