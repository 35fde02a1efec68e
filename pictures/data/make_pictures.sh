#!/bin/sh
# Makes the pictures shipped for picture bullets and lines (ImageMagick).
# Run from this folder; the PNGs are committed, so a build does not need it.
set -e
mkdir -p bullets lines
B="-size 16x16 xc:none"
convert $B -fill '#1f5fbf' -draw 'circle 8,8 8,2' bullets/01-cerchio-blu.png
convert $B -fill '#c0392b' -draw 'circle 8,8 8,2' bullets/02-cerchio-rosso.png
convert $B -fill '#27ae60' -draw 'rectangle 3,3 12,12' bullets/03-quadrato-verde.png
convert $B -fill '#e67e22' -draw 'polygon 8,1 15,8 8,15 1,8' bullets/04-rombo-arancio.png
convert $B -fill '#8e44ad' -draw 'polygon 3,2 14,8 3,14' bullets/05-triangolo-viola.png
convert $B -fill '#f1c40f' -stroke '#b7950b' -draw 'polygon 8,1 10,6 15,6 11,9 13,15 8,11 3,15 5,9 1,6 6,6' bullets/06-stella-gialla.png
convert $B -fill none -stroke '#2c3e50' -strokewidth 2 -draw 'circle 8,8 8,3' bullets/07-anello-grigio.png
convert $B -fill '#16a085' -draw 'polygon 2,6 9,6 9,2 15,8 9,14 9,10 2,10' bullets/08-freccia-verde.png
convert $B -fill none -stroke '#27ae60' -strokewidth 3 -draw 'polyline 2,8 6,13 14,3' bullets/09-spunta.png
convert $B -fill '#e74c3c' -draw 'circle 5,6 5,3' -draw 'circle 11,6 11,3' -draw 'polygon 2,7 14,7 8,14' bullets/10-cuore.png
convert $B -fill '#2980b9' -draw 'rectangle 2,2 13,13' -fill white -draw 'rectangle 5,5 10,10' bullets/11-quadro-blu.png
convert $B -fill '#d35400' -draw 'roundrectangle 2,4 13,11 3,3' bullets/12-pastiglia.png
convert $B -fill '#7f8c8d' -draw 'circle 8,8 8,5' bullets/13-punto-grigio.png
convert $B -fill '#c0392b' -draw 'polygon 8,2 14,8 8,14 2,8' -fill white -draw 'circle 8,8 8,6' bullets/14-rombo-rosso.png
L="-size 400x12 xc:none -fill black"
convert $L -draw 'rectangle 0,4 399,7' lines/01-continua.png
convert $L -draw 'rectangle 0,1 399,3' -draw 'rectangle 0,8 399,10' lines/02-doppia.png
convert $L -draw 'rectangle 0,0 399,11' lines/03-spessa.png
convert $L -draw 'polygon 0,6 200,0 399,6 200,11' lines/04-affusolata.png
convert -size 400x12 xc:none -fill none -stroke black -strokewidth 3 -draw 'path "M 0,6 Q 25,0 50,6 T 100,6 T 150,6 T 200,6 T 250,6 T 300,6 T 350,6 T 400,6"' lines/05-onda.png
convert $L -draw 'rectangle 0,4 59,7' -draw 'rectangle 80,4 139,7' -draw 'rectangle 160,4 219,7' -draw 'rectangle 240,4 299,7' -draw 'rectangle 320,4 379,7' lines/06-tratteggio.png
convert $L -draw 'circle 6,6 6,2' -draw 'circle 26,6 26,2' -draw 'circle 46,6 46,2' -draw 'circle 66,6 66,2' -draw 'circle 86,6 86,2' -draw 'circle 106,6 106,2' -draw 'circle 126,6 126,2' -draw 'circle 146,6 146,2' -draw 'circle 166,6 166,2' -draw 'circle 186,6 186,2' -draw 'circle 206,6 206,2' -draw 'circle 226,6 226,2' -draw 'circle 246,6 246,2' -draw 'circle 266,6 266,2' -draw 'circle 286,6 286,2' -draw 'circle 306,6 306,2' -draw 'circle 326,6 326,2' -draw 'circle 346,6 346,2' -draw 'circle 366,6 366,2' -draw 'circle 386,6 386,2' lines/07-punti.png
