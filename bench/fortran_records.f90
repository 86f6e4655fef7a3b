! Reads records of one shape up to the first line that is none: 1 and 2 arcs of two and of one
! vertex to a line, 3 and 4 cells, reals and integers, 5 a table's records of 128 columns.
subroutine read_records(path, output, shape, passed, records, path_length, output_length) bind(c)
    use iso_c_binding
    implicit none
    integer(c_int32_t), value :: path_length, output_length
    character(kind=c_char), intent(in) :: path(path_length), output(output_length)
    integer(c_int32_t), intent(in) :: shape, passed
    integer(c_int64_t), intent(out) :: records
    character(len=512) :: input_name, output_name
    character(len=160) :: text
    character(len=22) :: name
    integer(c_int32_t) :: head(7), cells(5), line, status
    real(c_double) :: values(6)
    input_name = transfer(path, repeat(' ', path_length))
    output_name = transfer(output, repeat(' ', output_length))
    open(71, file=input_name, action='read', form='formatted')
    open(72, file=output_name, action='write', form='unformatted', access='stream', &
         status='replace')
    do line = 1, passed
        read(71, '(A)') text
    end do
    records = 0
    do
        select case (shape)
        case (1, 2)
            read(71, '(7I10)', iostat=status) head
            if (status /= 0 .or. head(1) == -1) exit
            write(72) head
            if (shape == 1) then
                do line = 1, (head(7) + 1) / 2
                    read(71, '(1P,4E14.7)') values(1:4)
                    write(72) values(1:4)
                end do
            else
                do line = 1, head(7)
                    read(71, '(1P,2E21.14)') values(1:2)
                    write(72) values(1:2)
                end do
            end if
        case (3)
            read(71, '(1P,5E14.7)', iostat=status) values(1:5)
            if (status /= 0) exit
            write(72) values(1:5)
        case (4)
            read(71, '(5I14)', iostat=status) cells
            if (status /= 0) exit
            write(72) cells
        case (5)
            read(71, '(A80)') text(1:80)
            if (text(1:3) == 'EOI') exit
            read(71, '(A80)') text(81:160)
            read(text, '(2I11,1P,6E14.7,A22)') cells(1:2), values, name
            write(72) cells(1:2), values, name
        end select
        records = records + 1
    end do
    close(71)
    close(72)
end subroutine
